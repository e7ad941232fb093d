#include "app/command_line.h"
#include "app/paths.h"

#include <gtest/gtest.h>

TEST(PathTest, TakesPathsApart) {
    struct {
        const char *path, *folder, *title, *base, *extension;
        bool has_dot;
    } const cases[] = {
        {"C:\\A.B\\a.b.c", "C:\\A.B\\", "a.b.c", "a.b", ".c", true},
        {"/home/v1.2/STOCK", "/home/v1.2/", "STOCK", "STOCK", "", true},
        {"C:STOCK", "C:", "STOCK", "STOCK", "", false},
        {"STOCK.", "", "STOCK.", "STOCK", ".", true},
        {"C:\\JOBS\\", "C:\\JOBS\\", "", "", "", false},
        {"", "", "", "", "", false},
    };
    for (const auto& c : cases) {
        const std::string path = c.path;
        EXPECT_EQ(path_folder(path), c.folder);
        EXPECT_EQ(path_file_title(path), c.title);
        EXPECT_EQ(path_base_name(path), c.base);
        EXPECT_EQ(path_extension(path), c.extension);
        EXPECT_EQ(with_default_extension(path, ".cft"), c.has_dot ? path : path + ".cft");
        EXPECT_EQ(replace_extension(path, ".001"), std::string(c.folder) + c.base + ".001");
    }
}

TEST(CommandLineTest, TakesOneOptionWithItsFile) {
    for (const char* nothing : {"", "-S", "-R=", "-R=   ", "-R=\"\"", "/S=A", " -S=A", "-X=A", "-S A"})
        EXPECT_EQ(parse_command_line(nothing).option, 0) << nothing;
    const std::pair<const char*, std::string> cases[] = {
        {"-s=  STOCK.PGT", "S STOCK.PGT"},
        {"-r=C:\\My Data\\A B.DAT", "R C:\\My Data\\A B.DAT"},
        {"\"-S=C:\\A B.PGT\"", "S C:\\A B.PGT"}, // as shells quote it
        {"-F= \"C:\\A B.PGT\" ", "F C:\\A B.PGT"}};
    for (const auto& [line, request] : cases)
        EXPECT_EQ(parse_command_line(line).option + (" " + parse_command_line(line).file), request);
}
