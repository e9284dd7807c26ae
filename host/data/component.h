#pragma once
// Sets of vertices, faces, CVs and the like, as one object.

#include "host/core/object.h"
#include "host/core/shared.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vesk {

/// Elements of one kind, on whatever geometry it is used with: a sorted set without duplicates. An element is
/// one index (vertex, edge, face, UV, curve CV, edit point, particle), two (surface CV: u, v; vertex-face:
/// vertex, face) or three (lattice point: s, t, u), and elements are ordered by the first index, then the
/// second ...
///
/// A *complete* component stands for all elements, whether or not their number is known yet, and takes no
/// room. Copies share their elements until one is changed.
class Component : public Object {
  public:
    /// Most elements that a component can hold or, when complete, stand for with known sizes.
    static constexpr std::size_t kMaxElements = std::size_t{1} << 26;

    /// Indices per element of a kind; 0 for numbers that are no kind of component with elements.
    static int dimensionsOf(MFn::Type kind);
    /// The word in front of the brackets (`vtx`); empty for other numbers.
    static std::string_view wordOf(MFn::Type kind);
    /// The kind that a word with so many brackets means; `MFn::kInvalid` when there is none.
    static MFn::Type kindOf(std::string_view word, int brackets);

    /// An empty component; null when `kind` has no elements.
    static Ref<Component> create(MFn::Type kind);

    MFn::Type apiType() const override { return kind_; }
    virtual int dimensions() const = 0;
    virtual Ref<Component> copy() const = 0;

    /// Elements held; 0 for a complete component of unknown size.
    virtual std::size_t count() const = 0;
    bool isComplete() const { return complete_; }
    bool isEmpty() const { return !isUnsized() && count() == 0; }
    /// Complete, and of how many elements is not known.
    virtual bool isUnsized() const = 0;

    /// Makes this complete; elements are forgotten. With sizes (one for each index), false and no change when
    /// one is negative or they multiply to more than `kMaxElements`.
    virtual void setComplete() = 0;
    virtual bool setComplete(const int* sizes) = 0;
    /// Turns a complete component into one that lists its elements; one of unknown size becomes empty.
    virtual void setListed() = 0;

    // The set operations take components of the same kind. On another kind they do nothing and return false.

    /// Adds all elements of `other`. A union that is all of a complete component is complete. False as well
    /// when there would be more than `kMaxElements`.
    virtual bool unite(const Component& other) = 0;
    /// Takes away all elements of `other`; false as well when this is complete of unknown size and `other` is
    /// not, since what remains cannot be told.
    virtual bool subtract(const Component& other) = 0;
    /// A complete component contains all, whatever its size; nothing contains an empty one.
    virtual bool contains(const Component& other) const = 0;
    virtual bool isEqual(const Component& other) const = 0;

    /// As commands and files write it: `vtx[*]` when complete, else one text for each run or block of
    /// elements, such as `vtx[0:2]` and `vtx[5]`, or `cv[0:1][2:5]`. None for an empty component.
    virtual std::vector<std::string> texts() const = 0;

    virtual std::size_t byteSize() const = 0;

  protected:
    explicit Component(MFn::Type kind) : kind_(kind) {}

    const MFn::Type kind_;
    bool complete_ = false;
};

template <int N>
class IndexedComponent final : public Component {
  public:
    using Element = std::array<int, N>;

    /// `kind` is one whose elements have N indices.
    explicit IndexedComponent(MFn::Type kind) : Component(kind) {}
    IndexedComponent(const IndexedComponent& other) : Component(other.kind_) { assign(other); }
    IndexedComponent& operator=(const IndexedComponent&) = delete;

    /// False and no change for a negative index, or when the component is full. Any order; on a complete
    /// component an element beyond its size turns it into a listed one.
    bool add(const Element& element);
    bool has(const Element& element) const;
    /// The element at a position below `count()`.
    Element at(std::size_t position) const;
    /// The sizes of a complete component, if known.
    std::optional<Element> sizes() const {
        return isUnsized() || !complete_ ? std::nullopt : std::optional(sizes_);
    }
    bool setComplete(const Element& sizes) { return setComplete(sizes.data()); }

    int dimensions() const override { return N; }
    Ref<Component> copy() const override { return makeRef<IndexedComponent>(*this); }
    std::size_t count() const override;
    bool isUnsized() const override { return complete_ && sizes_[0] < 0; }
    void setComplete() override;
    bool setComplete(const int* sizes) override;
    void setListed() override;
    bool unite(const Component& other) override;
    bool subtract(const Component& other) override;
    bool contains(const Component& other) const override;
    bool isEqual(const Component& other) const override;
    std::vector<std::string> texts() const override;
    std::size_t byteSize() const override { return elements_->size() * sizeof(Element); }

  private:
    using Elements = std::vector<Element>;

    bool covers(const Element& element) const;
    bool coversAll(const IndexedComponent& other) const;
    /// The elements of this, listed or not, in order; `room` is used when they have to be made.
    const Elements& list(Elements& room) const;
    const Elements& sorted() const;
    void replace(Elements sortedElements);
    void assign(const IndexedComponent& other);

    /// Unused while complete. The first `sortedCount_` are sorted and unique; what was added after them out
    /// of order is sorted in when somebody looks.
    mutable Shared<Elements> elements_;
    mutable std::size_t sortedCount_ = 0;
    Element sizes_{}; ///< of a complete component; -1 first when unknown
};

using SingleComponent = IndexedComponent<1>;
using DoubleComponent = IndexedComponent<2>;
using TripleComponent = IndexedComponent<3>;

} // namespace vesk
