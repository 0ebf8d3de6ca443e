// Pictures where the file system is in the way.
#include <windows.h>

#include "tests/client/IconFixture.h"
#include "tests/support/TraceLines.h"

namespace {

namespace fs = std::filesystem;

/// Has the system look for its temporary folder elsewhere while one of these lives.
class TemporaryFolderSetting {
public:
    explicit TemporaryFolderSetting(const std::wstring& folder)
    {
        for (Variable& variable : variables_) {
            variable.before = valueOf(variable.name);
            SetEnvironmentVariableW(variable.name, folder.c_str());
        }
    }
    TemporaryFolderSetting(const TemporaryFolderSetting&) = delete;
    TemporaryFolderSetting& operator=(const TemporaryFolderSetting&) = delete;
    ~TemporaryFolderSetting()
    {
        for (const Variable& variable : variables_) SetEnvironmentVariableW(variable.name, variable.before.c_str());
    }

private:
    struct Variable {
        const wchar_t* name;
        std::wstring before;
    };

    static std::wstring valueOf(const wchar_t* name)
    {
        const wchar_t* value = _wgetenv(name);
        return value != nullptr ? value : L"";
    }

    Variable variables_[2] = {{L"TMP", {}}, {L"TEMP", {}}};
};

/// A file that is open and that nobody else may open.
class HeldFile {
public:
    explicit HeldFile(const fs::path& file)
        : handle_(CreateFileW(file.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr))
    {
        EXPECT_NE(handle_, INVALID_HANDLE_VALUE) << file;
    }
    HeldFile(const HeldFile&) = delete;
    HeldFile& operator=(const HeldFile&) = delete;
    ~HeldFile() { CloseHandle(handle_); }

private:
    HANDLE handle_;
};

std::size_t countOf(const fs::path& folder)
{
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), fs::directory_iterator()));
}

using IconFilesTest = IconFixture;

}  // namespace

TEST_F(IconFilesTest, AreNotReadWhileHeldByAnother)
{
    const fs::path file = write("held.png", "picture");
    const HeldFile held(file);
    EXPECT_EQ(upload(file), 0);
    EXPECT_EQ(reason(), "Unable to read the picture: " + utf8(file));
    EXPECT_EQ(narrow(url), "before");
    EXPECT_EQ(requestCount(), 0U);
}

TEST_F(IconFilesTest, AreNamedBehindEitherSeparator)
{
    write("a.png", "picture");
    for (const char* separator : {"/", "\\"}) {
        reply(resultReply("SUCCESS"));
        const std::string file = utf8(folder) + separator + "a.png";
        EXPECT_EQ(client.SetSpaceIcon("c"_w, "w"_w, wide(file), url), 1);
        EXPECT_NE(lastBody().find("name=\"name\"\r\n\r\na.png\r\n"), std::string::npos) << file;
        EXPECT_NE(lastBody().find("filename=\"" + file + "\""), std::string::npos) << file;
    }
}

TEST_F(IconFilesTest, NeedATemporaryFolder)
{
    const TemporaryFolderSetting tooLong(L"C:\\" + std::wstring(300, L't'));
    const TraceLines lines;
    EXPECT_EQ(download("a.png"), 0);
    EXPECT_EQ(narrow(path), "before");
    EXPECT_EQ(reason(), "get temporary dir failed.");
    EXPECT_EQ(TraceLines::all(), (std::vector<std::string>{"9 Debug: ---->>>> Enter CWapiClient::GetSpaceIcon",
                                                           "0 Error: get temporary dir failed.",
                                                           "9 Debug: <<<<---- Leave CWapiClient::GetSpaceIcon"}));
}

TEST_F(IconFilesTest, AreNotWrittenIntoAMissingFolder)
{
    const TemporaryFolderSetting missing((folder / "missing").wstring());
    EXPECT_EQ(download("a.png"), 0);
    EXPECT_EQ(narrow(path), "before");
    EXPECT_EQ(reason(), "Unable to write the file: " + utf8(folder / "missing" / "a.png"));
    EXPECT_EQ(countOf(folder), 0U);
}

TEST_F(IconFilesTest, AreNotReplacedWhileHeldByAnother)
{
    const TemporaryFolderSetting own(folder.wstring());
    const fs::path file = write("a.png", "as it was");
    {
        const HeldFile held(file);
        EXPECT_EQ(download("a.png", "new"), 0);
    }
    EXPECT_EQ(narrow(path), "before");
    EXPECT_EQ(reason(), "Unable to write the file: " + utf8(file));
    EXPECT_EQ(bytesOf(file), "as it was");
    EXPECT_EQ(countOf(folder), 1U);
}
