// Pictures on the disk, and the calls that send and fetch them.
#pragma once

#include <filesystem>
#include <fstream>
#include <string>

#include "tests/client/ClientFixture.h"
#include "tests/support/FileBytes.h"

inline std::string utf8(const std::filesystem::path& path)
{
    const auto text = path.u8string();
    return {text.begin(), text.end()};
}

class IconFixture : public ClientFixture {
protected:
    IconFixture() { std::filesystem::create_directories(folder); }
    ~IconFixture() override { std::filesystem::remove_all(folder); }

    std::filesystem::path write(const std::string& name, const std::string& bytes) const
    {
        const std::filesystem::path file = folder / std::u8string(name.begin(), name.end());
        std::ofstream(file, std::ios::binary) << bytes;
        return file;
    }

    int upload(const std::filesystem::path& file)
    {
        return client.SetSpaceIcon("c&1"_w, "w&<é"_w, wide(utf8(file)), url);
    }

    /// Fetches a picture of that name.
    int download(const std::string& name, const std::string& bytes = "picture")
    {
        server.reply(200, "image/png", bytes);
        return client.GetSpaceIcon("c"_w, server.url("/" + name), path);
    }

    std::string reason() { return narrow(client.GetLstMsg().reason); }

    std::filesystem::path folder =
        std::filesystem::temp_directory_path() / ("icon-test-" + std::to_string(server.port()));
    CStringT url = "before"_w;
    CStringT path = "before"_w;
};
