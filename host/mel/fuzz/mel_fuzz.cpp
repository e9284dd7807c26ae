// libFuzzer's way in: any bytes as a script.

#include "host/mel/fuzz/mel_input.h"

#include <cstddef>
#include <cstdint>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    vesk::mel::runAnyText({reinterpret_cast<const char*>(data), size});
    return 0;
}
