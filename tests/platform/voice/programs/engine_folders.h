// A home of its own for engines that are programs, in which nothing may be left.
#pragma once

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

namespace tessavox::voice::tests {

/// Sets HOME, XDG_DATA_HOME and XDG_RUNTIME_DIR.
class EngineFolders : public testing::Test {
protected:
    EngineFolders()
    {
        for (const auto& [variable, folder] :
            { std::pair("HOME", home), std::pair("XDG_DATA_HOME", home / "data"),
                std::pair("XDG_RUNTIME_DIR", runtime) }) {
            std::filesystem::create_directories(folder);
            setenv(variable, folder.c_str(), 1);
        }
    }
    ~EngineFolders() override
    {
        // A program that is just ending removes its folder too.
        std::error_code error;
        do
            std::filesystem::remove_all(root, error);
        while (error == std::errc::no_such_file_or_directory);
    }

    /// A description in the user's own folder. Returns its path.
    std::filesystem::path describe(const std::string& name, const std::string& mode,
        const std::string& command, const std::string& more = "")
    {
        const std::filesystem::path folder = home / "data/tessavox/voices";
        std::filesystem::create_directories(folder);
        std::ofstream(folder / (name + ".voice"))
            << "Name = " << name << "\nLanguage = en-US\nMode = " << mode
            << "\nCommand = " << command << "\n"
            << more << "\n";
        return folder / (name + ".voice");
    }

    const std::filesystem::path root
        = std::filesystem::temp_directory_path() / ("tessavox-engines-" + std::to_string(getpid()));
    const std::filesystem::path home = root / "home";
    const std::filesystem::path runtime = root / "run";
};

} // namespace tessavox::voice::tests
