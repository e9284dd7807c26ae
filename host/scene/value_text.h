#pragma once

#include "host/data/data.h"
#include "host/scene/formats/atomic_file.h"

#include <string>
#include <string_view>

namespace vesk::scene {

/// A text in quotes, as scene files hold it.
std::string quotedText(std::string_view text);

/// Whether scene files have a form for this data.
bool canWriteData(const Data& data);
/// What stands behind the plug's name: ` -type "doubleArray" 2 0.5 1`.
void writeData(formats::AtomicFile& file, const Data& data);

/// Numbers in a list that breaks its lines, `perLine` to a line.
template <class T>
void writeNumbers(formats::AtomicFile& file, const T* values, std::size_t count, std::size_t perLine) {
    for (std::size_t i = 0; i < count; ++i) {
        file.write(i > 0 && i % perLine == 0 ? "\n\t\t" : " ");
        file.putNumber(values[i]);
    }
}

} // namespace vesk::scene
