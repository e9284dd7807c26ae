#pragma once
// The fixture of all tests that drive a whole session as a user would.

#include "host/core/log.h"
#include "host/session/session.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace vesk::tests {

/// A fresh session with the plug-in loaded and a clean log. A test fails on any warning or error that it did
/// not take.
class SessionTest : public ::testing::Test {
  protected:
    void SetUp() override {
        log().keepEntries(true);
        session = std::make_unique<Session>();
        const Outcome outcome = session->plugins().load(std::string(VESK_BINARY_DIR) + "/plug-ins/Vesk.so");
        ASSERT_TRUE(outcome) << outcome.error;
        (void)log().take();
    }
    void TearDown() override {
        for (const auto& text : problems())
            ADD_FAILURE() << "unannounced: " << text;
        session.reset();
        log().keepEntries(false);
    }

    /// Warnings and errors since the last call.
    std::vector<std::string> problems() {
        std::vector<std::string> texts;
        for (auto& entry : log().take()) {
            if (entry.level == LogLevel::Warning || entry.level == LogLevel::Error)
                texts.push_back(std::move(entry.text));
        }
        return texts;
    }
    using Texts = std::vector<std::string>;

    mel::Value run(const std::string& text) {
        const auto result = session->run(text);
        EXPECT_TRUE(result.ok) << text << "\n  " << result.error;
        return result.value;
    }
    std::vector<double> floats(const std::string& plug) { return *run("getAttr " + plug).asFloatArray(); }
    std::vector<int> ints(const std::string& plug) { return *run("getAttr " + plug).asIntArray(); }

    static void expectNear(const std::vector<double>& actual, const std::vector<double>& expected,
                           double tolerance = 1e-6) {
        ASSERT_EQ(actual.size(), expected.size());
        for (std::size_t i = 0; i < actual.size(); ++i)
            EXPECT_NEAR(actual[i], expected[i], tolerance) << "at " << i;
    }

    std::unique_ptr<Session> session;
};

} // namespace vesk::tests
