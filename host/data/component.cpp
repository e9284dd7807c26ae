#include "host/data/component.h"

#include <algorithm>
#include <iterator>
#include <map>

namespace vesk {

namespace {

struct ComponentKind {
    MFn::Type type;
    int dimensions;
    std::string_view word;
};

constexpr ComponentKind componentKinds[] = {
    {MFn::kMeshVertComponent, 1, "vtx"},        {MFn::kMeshEdgeComponent, 1, "e"},
    {MFn::kMeshPolygonComponent, 1, "f"},       {MFn::kMeshMapComponent, 1, "map"},
    {MFn::kMeshVtxFaceComponent, 2, "vtxFace"}, {MFn::kCurveCVComponent, 1, "cv"},
    {MFn::kCurveEPComponent, 1, "ep"},          {MFn::kSurfaceCVComponent, 2, "cv"},
    {MFn::kLatticeComponent, 3, "pt"},          {MFn::kDynParticleSetComponent, 1, "pt"},
};

const ComponentKind* findKind(MFn::Type type) {
    const auto* const end = std::end(componentKinds);
    const auto* const found =
        std::find_if(componentKinds, end, [type](const ComponentKind& kind) { return kind.type == type; });
    return found == end ? nullptr : found;
}

} // namespace

int Component::dimensionsOf(MFn::Type kind) {
    const ComponentKind* found = findKind(kind);
    return found ? found->dimensions : 0;
}

std::string_view Component::wordOf(MFn::Type kind) {
    const ComponentKind* found = findKind(kind);
    return found ? found->word : std::string_view();
}

MFn::Type Component::kindOf(std::string_view word, int brackets) {
    for (const ComponentKind& kind : componentKinds) {
        if (kind.word == word && kind.dimensions == brackets) return kind.type;
    }
    return MFn::kInvalid;
}

Ref<Component> Component::create(MFn::Type kind) {
    switch (dimensionsOf(kind)) {
    case 1: return makeRef<SingleComponent>(kind);
    case 2: return makeRef<DoubleComponent>(kind);
    case 3: return makeRef<TripleComponent>(kind);
    default: return nullptr;
    }
}

template <int N>
void IndexedComponent<N>::assign(const IndexedComponent& other) {
    // Sorted first, so that holders of the same elements agree on which of them are in order.
    other.sorted();
    elements_ = other.elements_;
    sortedCount_ = other.sortedCount_;
    complete_ = other.complete_;
    sizes_ = other.sizes_;
}

template <int N>
const typename IndexedComponent<N>::Elements& IndexedComponent<N>::sorted() const {
    if (sortedCount_ == elements_->size()) return *elements_;
    Elements& elements = elements_.write();
    const auto middle = elements.begin() + static_cast<std::ptrdiff_t>(sortedCount_);
    std::sort(middle, elements.end());
    std::inplace_merge(elements.begin(), middle, elements.end());
    elements.erase(std::unique(elements.begin(), elements.end()), elements.end());
    sortedCount_ = elements.size();
    return elements;
}

template <int N>
const typename IndexedComponent<N>::Elements& IndexedComponent<N>::list(Elements& room) const {
    if (!complete_) return sorted();
    room.clear();
    room.reserve(count());
    for (std::size_t i = 0; i < count(); ++i)
        room.push_back(at(i));
    return room;
}

template <int N>
void IndexedComponent<N>::replace(Elements sortedElements) {
    complete_ = false;
    sortedCount_ = sortedElements.size();
    elements_.reset(std::move(sortedElements));
}

template <int N>
bool IndexedComponent<N>::covers(const Element& element) const {
    return std::equal(element.begin(), element.end(), sizes_.begin(),
                      [](int index, int size) { return index >= 0 && index < size; });
}

/// Whether a complete component of known size needs nothing more to hold all of `other`.
template <int N>
bool IndexedComponent<N>::coversAll(const IndexedComponent& other) const {
    if (other.complete_)
        return std::equal(other.sizes_.begin(), other.sizes_.end(), sizes_.begin(), std::less_equal<>());
    const Elements& elements = other.sorted();
    return std::all_of(elements.begin(), elements.end(), [this](const Element& e) { return covers(e); });
}

template <int N>
bool IndexedComponent<N>::add(const Element& element) {
    if (std::any_of(element.begin(), element.end(), [](int index) { return index < 0; })) return false;
    if (complete_) {
        if (isUnsized() || covers(element)) return true;
        setListed();
    }
    Elements& elements = elements_.write();
    const bool inOrder = sortedCount_ == elements.size() && (elements.empty() || elements.back() < element);
    if (!inOrder) {
        if (elements.back() == element) return true;
        // Doublets must not pile up while nobody looks.
        if (elements.size() >= std::max<std::size_t>(1024, 2 * sortedCount_)) sorted();
    }
    if (elements.size() >= kMaxElements && sorted().size() >= kMaxElements) return false;
    elements.push_back(element);
    if (inOrder) ++sortedCount_;
    return true;
}

template <int N>
bool IndexedComponent<N>::has(const Element& element) const {
    if (complete_) return isUnsized() || covers(element);
    const Elements& elements = sorted();
    return std::binary_search(elements.begin(), elements.end(), element);
}

template <int N>
typename IndexedComponent<N>::Element IndexedComponent<N>::at(std::size_t position) const {
    if (!complete_) return sorted()[position];
    Element element;
    for (int i = N; i-- > 0;) {
        const auto size = static_cast<std::size_t>(sizes_[i]);
        element[i] = static_cast<int>(position % size);
        position /= size;
    }
    return element;
}

template <int N>
std::size_t IndexedComponent<N>::count() const {
    if (!complete_) return sorted().size();
    if (isUnsized()) return 0;
    std::size_t product = 1;
    for (const int size : sizes_)
        product *= static_cast<std::size_t>(size);
    return product;
}

template <int N>
void IndexedComponent<N>::setComplete() {
    replace({});
    complete_ = true;
    sizes_.fill(-1);
}

template <int N>
bool IndexedComponent<N>::setComplete(const int* sizes) {
    std::size_t product = 1;
    for (int i = 0; i < N; ++i) {
        if (sizes[i] < 0 || static_cast<std::size_t>(sizes[i]) > kMaxElements) return false;
        product = std::min(product * static_cast<std::size_t>(sizes[i]), kMaxElements + 1);
    }
    if (product > kMaxElements) return false;
    setComplete();
    std::copy_n(sizes, N, sizes_.begin());
    return true;
}

template <int N>
void IndexedComponent<N>::setListed() {
    if (!complete_) return;
    Elements elements;
    list(elements);
    replace(std::move(elements));
}

template <int N>
bool IndexedComponent<N>::unite(const Component& component) {
    if (component.apiType() != kind_) return false;
    const auto& other = static_cast<const IndexedComponent&>(component);
    if (isUnsized() || other.isEmpty()) return true;
    if (other.isUnsized()) return setComplete(), true;
    if (complete_ && coversAll(other)) return true;
    if (other.complete_ && other.coversAll(*this)) return setComplete(other.sizes_.data());
    if (other.count() == 1) return add(other.at(0));
    if (isEmpty()) {
        assign(other);
        return true;
    }
    Elements mine;
    Elements theirs;
    Elements both;
    const Elements& a = list(mine);
    const Elements& b = other.list(theirs);
    both.reserve(a.size() + b.size());
    std::set_union(a.begin(), a.end(), b.begin(), b.end(), std::back_inserter(both));
    if (both.size() > kMaxElements) return false;
    replace(std::move(both));
    return true;
}

template <int N>
bool IndexedComponent<N>::subtract(const Component& component) {
    if (component.apiType() != kind_) return false;
    const auto& other = static_cast<const IndexedComponent&>(component);
    if (isEmpty() || other.isEmpty()) return true;
    if (other.isUnsized()) return replace({}), true;
    if (isUnsized()) return false;
    Elements mine;
    Elements rest;
    const Elements& from = list(mine);
    std::copy_if(from.begin(), from.end(), std::back_inserter(rest),
                 [&](const Element& e) { return !other.has(e); });
    if (rest.size() < from.size()) replace(std::move(rest));
    return true;
}

template <int N>
bool IndexedComponent<N>::contains(const Component& component) const {
    if (component.apiType() != kind_ || component.isEmpty()) return false;
    const auto& other = static_cast<const IndexedComponent&>(component);
    if (complete_) return true;
    if (other.isUnsized()) return false;
    if (other.count() == 1) return has(other.at(0));
    Elements room;
    const Elements& elements = other.list(room);
    return std::includes(sorted().begin(), sorted().end(), elements.begin(), elements.end());
}

template <int N>
bool IndexedComponent<N>::isEqual(const Component& component) const {
    if (component.apiType() != kind_) return false;
    const auto& other = static_cast<const IndexedComponent&>(component);
    if (isUnsized() || other.isUnsized()) return isUnsized() == other.isUnsized();
    if (complete_ && other.complete_) return sizes_ == other.sizes_;
    if (count() != other.count()) return false;
    Elements mine;
    Elements theirs;
    return list(mine) == other.list(theirs);
}

namespace {

template <int N>
struct Box {
    std::array<int, N> first;
    std::array<int, N> last;
};

/// Joins boxes that lie side by side along one index and agree in all others. Boxes are in order of their
/// first elements, and stay so.
template <int N>
void joinAlong(int axis, std::vector<Box<N>>& boxes) {
    std::map<std::array<int, 2 * N>, std::size_t> latest; // by the ranges of the other indices
    std::vector<Box<N>> joined;
    for (const Box<N>& box : boxes) {
        std::array<int, 2 * N> key{};
        for (int i = 0; i < N; ++i) {
            if (i == axis) continue;
            key[2 * i] = box.first[i];
            key[2 * i + 1] = box.last[i];
        }
        const auto [place, isNew] = latest.try_emplace(key, joined.size());
        if (!isNew && joined[place->second].last[axis] + 1 == box.first[axis]) {
            joined[place->second].last[axis] = box.last[axis];
            continue;
        }
        place->second = joined.size();
        joined.push_back(box);
    }
    boxes = std::move(joined);
}

template <int N>
std::vector<Box<N>> boxesOf(const std::vector<std::array<int, N>>& elements) {
    std::vector<Box<N>> boxes;
    for (const auto& element : elements) {
        const bool continues = !boxes.empty() && boxes.back().last[N - 1] + 1 == element[N - 1] &&
                               std::equal(element.begin(), element.end() - 1, boxes.back().last.begin());
        if (continues) {
            boxes.back().last = element;
        } else {
            boxes.push_back({element, element});
        }
    }
    for (int axis = N - 1; axis-- > 0;)
        joinAlong<N>(axis, boxes);
    return boxes;
}

} // namespace

template <int N>
std::vector<std::string> IndexedComponent<N>::texts() const {
    const std::string word(wordOf(kind_));
    std::vector<std::string> texts;
    if (isEmpty()) return texts;
    if (complete_) {
        texts.push_back(word);
        for (int i = 0; i < N; ++i)
            texts.back() += "[*]";
        return texts;
    }
    for (const Box<N>& box : boxesOf<N>(sorted())) {
        texts.push_back(word);
        for (int i = 0; i < N; ++i) {
            texts.back() += '[' + std::to_string(box.first[i]);
            if (box.last[i] > box.first[i]) texts.back() += ':' + std::to_string(box.last[i]);
            texts.back() += ']';
        }
    }
    return texts;
}

template class IndexedComponent<1>;
template class IndexedComponent<2>;
template class IndexedComponent<3>;

} // namespace vesk
