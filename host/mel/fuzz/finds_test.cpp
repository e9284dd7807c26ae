// Texts that once went wrong, each a file of the folder `finds`.

#include "host/mel/fuzz/mel_input.h"

#include "host/core/log.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace vesk::mel {

namespace {

TEST(FuzzFinds, RunAndLeaveTheInterpreterInOrder) {
    std::size_t count = 0;
    for (const auto& entry : std::filesystem::directory_iterator(VESK_SOURCE_DIR "/host/mel/fuzz/finds")) {
        SCOPED_TRACE(entry.path());
        std::ifstream file(entry.path(), std::ios::binary);
        const std::string text((std::istreambuf_iterator<char>(file)), std::istreambuf_iterator<char>());
        const std::size_t errors = log().errorCount();
        runAnyText(text); // aborts when it goes wrong
        EXPECT_LT(log().errorCount() - errors, 5000U) << "the script was not stopped";
        ++count;
    }
    EXPECT_GT(count, 0U);
}

} // namespace

} // namespace vesk::mel
