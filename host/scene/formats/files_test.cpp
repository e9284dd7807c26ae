#include "host/scene/formats/atomic_file.h"
#include "host/scene/formats/file_buffer.h"
#include "host/scene/formats/test_folder.h"

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>
#include <thread>

namespace vesk::formats {
namespace {

/// For a while the administrator, whom permissions do not stop, is somebody else.
class Unprivileged {
  public:
    Unprivileged() {
        if (wasRoot_) {
            EXPECT_EQ(::seteuid(nobody), 0);
        }
    }
    Unprivileged(const Unprivileged&) = delete;
    Unprivileged& operator=(const Unprivileged&) = delete;
    ~Unprivileged() {
        if (wasRoot_) {
            EXPECT_EQ(::seteuid(0), 0);
        }
    }

  private:
    static constexpr uid_t nobody = 65534;
    const bool wasRoot_ = ::geteuid() == 0;
};

TEST(FileBuffer, HoldsEveryByte) {
    const TestFolder folder;
    std::string bytes("\xEF\xBB\xBF\r\n\0\x1A", 7);
    for (int i = 0; i < 100000; ++i)
        bytes += static_cast<char>(i * 7);
    const auto file = FileBuffer::open(folder.store("a", bytes));
    ASSERT_TRUE(file) << file.error();
    EXPECT_EQ(file->text(), bytes);
    EXPECT_EQ(FileBuffer::open(folder.store("empty", ""))->text(), "");
}

TEST(FileBuffer, ReadsPipesToTheirEnd) {
    const TestFolder folder;
    const std::filesystem::path pipe = folder.path("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const std::string bytes(300000, 'x');
    std::thread writer([&] { std::ofstream(pipe) << bytes; });
    const auto file = FileBuffer::open(pipe);
    writer.join();
    ASSERT_TRUE(file) << file.error();
    EXPECT_EQ(file->text(), bytes);
}

TEST(FileBuffer, SaysWhyItCannotRead) {
    const TestFolder folder;
    const std::string missing = folder.path("missing.obj");
    EXPECT_EQ(FileBuffer::open(missing).error(), missing + ": cannot be read: No such file or directory");
    const std::string self = folder.path("");
    EXPECT_EQ(FileBuffer::open(self).error(), self + ": cannot be read: Is a directory");
}

TEST(AtomicFile, AppearsWholeOrNotAtAll) {
    const TestFolder folder;
    folder.store("out", "old");
    {
        AtomicFile file(folder.path("out"));
        file.write("new");
        file.putNumber(-2.5);
        file.putNumber(0.1F);
        file.put(' ');
        file.putNumber(std::int64_t{-9223372036854775807});
        EXPECT_EQ(folder.load("out"), "old");
        ASSERT_TRUE(file.commit());
    }
    EXPECT_EQ(folder.load("out"), "new-2.50.1 -9223372036854775807");
    {
        AtomicFile file(folder.path("out"));
        file.write("never committed");
    }
    EXPECT_EQ(folder.load("out"), "new-2.50.1 -9223372036854775807");
    EXPECT_EQ(folder.fileCount(), 1U);
}

TEST(AtomicFile, KeepsTheOrderOfShortAndLongWrites) {
    const TestFolder folder;
    std::string expected;
    AtomicFile file(folder.path("out"));
    for (const std::size_t length : {1U, 131071U, 131072U, 131073U, 5U, 400000U, 2U}) {
        const std::string bytes(length, static_cast<char>('a' + length % 26));
        file.write(bytes);
        file.putRaw(std::uint16_t{0x4142});
        expected += bytes + "BA";
    }
    ASSERT_TRUE(file.commit());
    EXPECT_TRUE(folder.load("out") == expected);
}

TEST(AtomicFile, FollowsLinksAndKeepsPermissions) {
    const TestFolder folder;
    std::filesystem::create_directory(folder.path("deep"));
    folder.store("deep/real", "old");
    ASSERT_EQ(::chmod(folder.path("deep/real").c_str(), 0640), 0);
    std::filesystem::create_symlink("deep/real", folder.path("link"));
    std::filesystem::create_symlink("link", folder.path("link2"));
    AtomicFile file(folder.path("link2"));
    file.write("new");
    ASSERT_TRUE(file.commit());

    EXPECT_TRUE(std::filesystem::is_symlink(folder.path("link2")));
    EXPECT_TRUE(std::filesystem::is_symlink(folder.path("link")));
    EXPECT_EQ(folder.load("deep/real"), "new");
    struct stat info = {};
    ASSERT_EQ(::stat(folder.path("deep/real").c_str(), &info), 0);
    EXPECT_EQ(info.st_mode & 0777U, 0640U);

    // A link to nothing yet makes the file where it points.
    std::filesystem::create_symlink("deep/fresh", folder.path("ahead"));
    AtomicFile ahead(folder.path("ahead"));
    ASSERT_TRUE(ahead.commit());
    EXPECT_TRUE(std::filesystem::is_regular_file(folder.path("deep/fresh")));
}

TEST(AtomicFile, RefusesWhatIsNoFileToReplace) {
    const TestFolder folder;
    std::filesystem::create_directory(folder.path("folder"));
    std::filesystem::create_symlink("round", folder.path("round"));
    ASSERT_EQ(::mkfifo(folder.path("pipe").c_str(), 0600), 0);
    folder.store("file", "");
    const std::size_t before = folder.fileCount();
    const std::pair<const char*, const char*> cases[] = {
        {"folder", "Is a directory"},    {"round", "Too many levels of symbolic links"},
        {"pipe", "not a regular file"},  {"missing/out", "No such file or directory"},
        {"file/out", "Not a directory"},
    };
    for (const auto& [name, why] : cases) {
        AtomicFile file(folder.path(name));
        file.write("x");
        EXPECT_EQ(file.commit().error, folder.path(name).string() + ": cannot be written: " + why);
    }
    EXPECT_EQ(folder.fileCount(), before);
    EXPECT_TRUE(std::filesystem::is_fifo(folder.path("pipe")));
}

TEST(Files, RespectPermissions) {
    const TestFolder folder;
    const std::string closed = folder.store("closed", "secret");
    const std::string kept = folder.store("kept", "kept");
    const std::string shut = folder.path("shut");
    std::filesystem::create_directory(shut);
    ASSERT_EQ(::chmod(closed.c_str(), 0), 0);
    ASSERT_EQ(::chmod(kept.c_str(), 0444), 0);
    ASSERT_EQ(::chmod(shut.c_str(), 0555), 0);
    ASSERT_EQ(::chmod(folder.path("").c_str(), 0777), 0);
    {
        const Unprivileged someone;
        EXPECT_EQ(FileBuffer::open(closed).error(), closed + ": cannot be read: Permission denied");
        for (const std::string& name : {kept, shut + "/out"}) {
            AtomicFile file(name);
            EXPECT_EQ(file.commit().error, name + ": cannot be written: Permission denied");
        }
    }
    EXPECT_EQ(folder.load("kept"), "kept");
    EXPECT_EQ(folder.fileCount(), 3U);
    ASSERT_EQ(::chmod(shut.c_str(), 0755), 0);
}

TEST(AtomicFile, TellsOfAFullDiskAndLeavesTheOldFile) {
    const TestFolder folder;
    folder.store("out", "old");
    // A limit on file size stands in for the disk: the write that passes it fails.
    struct rlimit limit = {};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &limit), 0);
    const auto handler = std::signal(SIGXFSZ, SIG_IGN);
    const struct rlimit small = {200000, limit.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &small), 0);
    Outcome outcome;
    {
        AtomicFile file(folder.path("out"));
        for (int i = 0; i < 100000; ++i)
            file.write("0123456789");
        EXPECT_TRUE(file.failed());
        outcome = file.commit();
    }
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
    std::signal(SIGXFSZ, handler);
    EXPECT_EQ(outcome.error, folder.path("out").string() + ": cannot be written: File too large");
    EXPECT_EQ(folder.load("out"), "old");
    EXPECT_EQ(folder.fileCount(), 1U);
}

} // namespace
} // namespace vesk::formats
