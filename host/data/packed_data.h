#pragma once
// Storage of multis whose elements are too many for a cell each: one flat array on the multi itself.

#include "host/data/data.h"

#include <memory>
#include <string>
#include <vector>

namespace vesk {

/// Elements of `stride` numbers each, element 0 first. Missing elements read as zero. Shared by clones, so
/// whoever writes asks `write()` first.
template <class T>
class PackedData : public Data {
  public:
    explicit PackedData(int numbersPerElement)
        : stride(numbersPerElement), values_(std::make_shared<std::vector<T>>()) {}

    const int stride;

    const std::vector<T>& values() const { return *values_; }
    std::vector<T>& write() {
        if (values_.use_count() > 1) values_ = std::make_shared<std::vector<T>>(*values_);
        return *values_;
    }
    int count() const { return static_cast<int>(values_->size()) / stride; }

    MFn::Type apiType() const override { return MFn::kData; }
    MFnData::Type dataType() const override { return MFnData::kInvalid; }
    Ref<Data> clone() const override { return makeRef<PackedData>(*this, 0); }
    std::size_t byteSize() const override { return values_->size() * sizeof(T); }
    PackedData(const PackedData& other, int) : Data(), stride(other.stride), values_(other.values_) {}

  private:
    std::shared_ptr<std::vector<T>> values_;
};

using PackedFloats = PackedData<float>;
using PackedInts = PackedData<int>;

/// The `polyFaces` records of a mesh in a scene file, in order, as one run of numbers.
/// A record is its code, for the codes with a set the set's index, then a count and that many ids.
class PolyFacesData : public Data {
  public:
    enum Code : int {
        Face,       ///< `f`: edge ids, -e-1 walks edge e backwards
        Hole,       ///< `h`: edge ids of a hole loop in the last face
        Uvs,        ///< `mu set`: UV ids of the last loop's corners
        Colors,     ///< `mc set`: colour ids of the last loop's corners
        OldColors,  ///< `fc`: as `mc 0`
        OldUvs,     ///< `mf`: as `mu 0`
        OldHoleUvs, ///< `mh`: UVs of the last hole loop, older form
    };
    static bool hasSet(int code) { return code == Uvs || code == Colors; }

    std::vector<int> codes;
    int faceCount = 0;

    MFn::Type apiType() const override { return MFn::kData; }
    MFnData::Type dataType() const override { return MFnData::kInvalid; }
    Ref<Data> clone() const override {
        auto copy = makeRef<PolyFacesData>();
        copy->codes = codes;
        copy->faceCount = faceCount;
        return copy;
    }
    std::size_t byteSize() const override { return codes.size() * sizeof(int); }
};

/// A value of a storage type that the host keeps and writes back but does not read.
class OpaqueData : public Data {
  public:
    std::string typeName;           ///< as after `-type`
    std::vector<std::string> words; ///< as they stood, strings with their quotes

    MFn::Type apiType() const override { return MFn::kData; }
    MFnData::Type dataType() const override { return MFnData::kInvalid; }
    Ref<Data> clone() const override {
        auto copy = makeRef<OpaqueData>();
        copy->typeName = typeName;
        copy->words = words;
        return copy;
    }
};

} // namespace vesk
