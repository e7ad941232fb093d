#include "app/command_line.h"
#include "app/paths.h"
#include "app/settings.h"
#include "tests/desktop_script.h"

#include <gtest/gtest.h>

TEST(PathTest, TakesPathsApart) {
    struct {
        const char* path;
        const char* folder;
        const char* title;
        const char* base;
        const char* extension;
        const char* with_cft;
    } const cases[] = {
        {"C:\\JOBS\\STOCK.PGT", "C:\\JOBS\\", "STOCK.PGT", "STOCK", ".PGT", "C:\\JOBS\\STOCK.PGT"},
        {"/home/v1.2/STOCK", "/home/v1.2/", "STOCK", "STOCK", "", "/home/v1.2/STOCK"},
        {"C:\\A.B\\a.b.c", "C:\\A.B\\", "a.b.c", "a.b", ".c", "C:\\A.B\\a.b.c"},
        {"C:STOCK", "C:", "STOCK", "STOCK", "", "C:STOCK.cft"},
        {"STOCK.", "", "STOCK.", "STOCK", ".", "STOCK."},
        {"C:\\JOBS\\", "C:\\JOBS\\", "", "", "", "C:\\JOBS\\.cft"},
        {"", "", "", "", "", ".cft"},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(path_folder(c.path), c.folder);
        EXPECT_EQ(path_file_title(c.path), c.title);
        EXPECT_EQ(path_base_name(c.path), c.base);
        EXPECT_EQ(path_extension(c.path), c.extension);
        EXPECT_EQ(with_default_extension(c.path, ".cft"), c.with_cft);
        EXPECT_EQ(replace_extension(c.path, ".001"), std::string(c.folder) + c.base + ".001");
    }
}

TEST(CommandLineTest, TakesOneOptionWithItsFile) {
    struct {
        const char* line;
        char option;
        const char* file;
    } const cases[] = {
        {"-S=STOCK.PGT", 'S', "STOCK.PGT"},
        {"-s=  STOCK.PGT", 'S', "STOCK.PGT"},
        {"-r=C:\\My Data\\A B.DAT", 'R', "C:\\My Data\\A B.DAT"},
        {"-F= \"C:\\My Data\\A B.PGT\" ", 'F', "C:\\My Data\\A B.PGT"},
        {"-R=", 0, ""},
        {"-R=   ", 0, ""},
        {"-R=\"\"", 0, ""},
        {"/S=STOCK.PGT", 0, ""},
        {" -S=STOCK.PGT", 0, ""},
        {"-X=STOCK.PGT", 0, ""},
        {"-S STOCK.PGT", 0, ""},
        {"-S", 0, ""},
        {"", 0, ""},
    };
    for (const auto& c : cases) {
        const auto request = parse_command_line(c.line);
        EXPECT_EQ(request.option, c.option) << c.line;
        EXPECT_EQ(request.file, c.file) << c.line;
    }
}

TEST(SettingsTest, DirectoriesStartAtTheDefaultAllTogether) {
    reset_desktop();
    desktop_settings["DIRECT/R_DIRECT"] = "D:\\IN\\";
    read_directory_setup();
    for (const char* key :
         {"P_DIRECT", "D_DIRECT", "L_DIRECT", "S_DIRECT", "R_DIRECT", "U_DIRECT", "C_DIRECT", "M_DIRECT"})
        EXPECT_EQ(desktop_settings[std::string("DIRECT/") + key], DEFAULT_DIRECTORY);
    EXPECT_EQ(receive_directory, DEFAULT_DIRECTORY);

    desktop_settings = {{"DIRECT/P_DIRECT", "P:\\"}, {"DIRECT/M_DIRECT", std::string(300, 'M')}};
    read_directory_setup();
    EXPECT_EQ(prog_directory, "P:\\");
    EXPECT_EQ(receive_directory, "");
    EXPECT_EQ(monitor_directory, std::string(255, 'M'));
    EXPECT_EQ(desktop_settings.size(), 2U) << "nothing is written before the end";
    config_directory = "C:\\NEW\\";
    write_directory_setup();
    EXPECT_EQ(desktop_settings["DIRECT/C_DIRECT"], "C:\\NEW\\");
    EXPECT_EQ(desktop_settings.size(), 8U);
}

TEST(SettingsTest, WindowSize) {
    reset_desktop();
    EXPECT_EQ(read_window_size().cx, 437U);
    EXPECT_EQ(read_window_size().cy, 86U);
    write_window_size({3000000000U, 12});
    EXPECT_EQ(desktop_settings["MAIN_WINDOW/CX"], "3000000000");
    EXPECT_EQ(read_window_size().cy, 12U);
    desktop_settings["MAIN_WINDOW/CX"] = "wide";
    EXPECT_EQ(read_window_size().cx, 0U);
}
