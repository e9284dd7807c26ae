#pragma once
// What tests of whole sessions share: a fresh session each, a folder of their own, and a log on which every
// warning and error must be announced.

#include "host/core/log.h"
#include "host/session/session.h"

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace vesk {

using Texts = std::vector<std::string>;

class SessionTest : public ::testing::Test {
  protected:
    void SetUp() override {
        log().keepEntries(true);
        (void)log().take();
        std::string name = (std::filesystem::temp_directory_path() / "vesk-test-XXXXXX").string();
        ASSERT_NE(mkdtemp(name.data()), nullptr);
        folder = name;
        restart();
    }
    void TearDown() override {
        session.reset();
        EXPECT_EQ(complaints(), Texts{}) << "unannounced";
        std::filesystem::remove_all(folder);
        log().keepEntries(false);
    }

    void restart(SessionOptions options = {}) {
        session.reset();
        session = std::make_unique<Session>(std::move(options));
    }

    /// Warnings and errors since the last call, in order; those taken do not fail the test any more.
    static Texts complaints() {
        Texts texts;
        for (const auto& entry : log().take()) {
            if (entry.level == LogLevel::Warning) texts.push_back("warning: " + entry.text);
            if (entry.level == LogLevel::Error) texts.push_back("error: " + entry.text);
        }
        return texts;
    }

    /// What a command answers, as the Script Editor shows it.
    std::string mel(const std::string& text) {
        const auto result = session->run(text);
        return result.ok ? result.value.display() : "error: " + result.error;
    }

    std::filesystem::path write(const std::string& name, std::string_view content) const {
        const auto path = folder / name;
        std::ofstream(path, std::ios::binary)
            .write(content.data(), static_cast<std::streamsize>(content.size()));
        return path;
    }
    static std::string contentOf(const std::filesystem::path& path) {
        std::ifstream file(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }

    std::filesystem::path folder; ///< removed after the test
    std::unique_ptr<Session> session;
};

} // namespace vesk
