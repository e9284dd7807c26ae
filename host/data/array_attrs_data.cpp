#include "host/data/array_attrs_data.h"

#include <algorithm>

namespace vesk {

ArrayAttrsData::Channel* ArrayAttrsData::findToWrite(std::string_view name) {
    const auto found = std::find_if(channels_.begin(), channels_.end(),
                                    [name](const Channel& channel) { return channel.name == name; });
    return found == channels_.end() ? nullptr : &*found;
}

const ArrayAttrsData::Channel* ArrayAttrsData::find(std::string_view name) const {
    return const_cast<ArrayAttrsData*>(this)->findToWrite(name);
}

void ArrayAttrsData::clear() {
    for (Channel& channel : channels_) {
        std::visit([](auto& values) { values.set({}); }, channel.values);
    }
}

Ref<Data> ArrayAttrsData::clone() const {
    auto copy = makeRef<ArrayAttrsData>();
    copy->channels_ = channels_;
    return copy;
}

std::size_t ArrayAttrsData::byteSize() const {
    std::size_t size = 0;
    for (const Channel& channel : channels_) {
        size += std::visit([](const auto& values) { return values.read().size() * sizeof(values.read()[0]); },
                           channel.values);
    }
    return size;
}

} // namespace vesk
