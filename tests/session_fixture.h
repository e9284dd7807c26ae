#pragma once
// The fixture of tests that drive a session with the plug-in loaded, as a user would.

#include "host/session/session_fixture.h"

#include <string>
#include <vector>

namespace vesk::tests {

class PluginTest : public SessionTest {
  protected:
    void SetUp() override {
        SessionTest::SetUp();
        const Outcome outcome = session->plugins().load(std::string(VESK_BINARY_DIR) + "/plug-ins/Vesk.so");
        ASSERT_TRUE(outcome) << outcome.error;
        (void)complaints(); // of what loading has to say there are tests of their own
    }

    /// Runs a text that must not fail.
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
};

} // namespace vesk::tests
