#include "app/command_line.h"
#include "app/paths.h"

#include <gtest/gtest.h>
#include <tuple>

TEST(PathTest, TakesPathsApart) {
    const std::tuple<std::string, std::string, std::string> cases[] = {
        {"C:\\A.B\\", "a.b", ".c"}, {"/home/v1.2/", "STOCK", ""}, {"C:", "STOCK", ""},
        {"", "STOCK", "."},         {"C:\\JOBS\\", "", ""},       {"", "", ""},
    };
    for (const auto& [folder, base, extension] : cases) {
        const std::string path = folder + base + extension;
        EXPECT_EQ(path_folder(path), folder);
        EXPECT_EQ(path_file_title(path), base + extension);
        EXPECT_EQ(path_base_name(path), base);
        EXPECT_EQ(path_extension(path), extension);
        const bool has_dot = path.find('.') != std::string::npos; // one of the folder counts, too
        EXPECT_EQ(with_default_extension(path, ".cft"), has_dot ? path : path + ".cft");
        EXPECT_EQ(replace_extension(path, ".001"), folder + base + ".001");
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
