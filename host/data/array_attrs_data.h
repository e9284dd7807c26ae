#pragma once
// Arrays by name, such as the channels of emitted particles.

#include "host/data/data.h"
#include "host/data/shared_values.h"

#include <maya/MString.h>
#include <maya/MVector.h>

#include <string>
#include <string_view>
#include <variant>
#include <vector>

namespace vesk {

/// Typed arrays under names, in the order in which they were made. Clones share each array until one writes
/// to it.
class ArrayAttrsData : public Data {
  public:
    using Values =
        std::variant<SharedValues<MVector>, SharedValues<double>, SharedValues<int>, SharedValues<MString>>;
    struct Channel {
        std::string name;
        Values values;
    };

    const std::vector<Channel>& channels() const { return channels_; }
    const Channel* find(std::string_view name) const;

    /// The array of that name and type; null when there is none, or one of another type.
    template <class T>
    const SharedValues<T>* findValues(std::string_view name) const {
        const Channel* channel = find(name);
        return channel ? std::get_if<SharedValues<T>>(&channel->values) : nullptr;
    }
    /// The same for writing, made when there is none of that name.
    template <class T>
    SharedValues<T>* makeValues(std::string_view name) {
        Channel* channel = findToWrite(name);
        if (!channel) {
            channels_.push_back({std::string(name), SharedValues<T>()});
            channel = &channels_.back();
        }
        return std::get_if<SharedValues<T>>(&channel->values);
    }
    /// Empties all arrays; their names and types stay.
    void clear();

    MFn::Type apiType() const override { return MFn::kDynArrayAttrsData; }
    MFnData::Type dataType() const override { return MFnData::kDynArrayAttrs; }
    Ref<Data> clone() const override;
    std::size_t byteSize() const override;

  private:
    Channel* findToWrite(std::string_view name);

    std::vector<Channel> channels_;
};

} // namespace vesk
