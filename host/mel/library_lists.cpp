// The library's functions that look for items in arrays, and put in and take out: `stringArray...`,
// `intArray...`, `floatArray...`.

#include "host/mel/library.h"
#include "host/mel/limits.h"

#include <algorithm>
#include <unordered_set>

namespace vesk::mel {

namespace {

template <class Array>
const Array& listAt(Arguments a, std::size_t index) {
    return a[index]->ifShared<Array>()->read();
}

/// The array variable that an argument by reference stands for.
template <class Array>
Array& listToChange(Arguments a, std::size_t index) {
    if (a[index]->isNone()) *a[index] = Array();
    if (auto* array = a[index]->ifShared<Array>()) return array->write();
    cannotConvert(a[index]->type(), Value(Array()).type());
}

template <class Array>
const typename Array::value_type& itemAt(Arguments a, std::size_t index) {
    using Item = typename Array::value_type;
    if constexpr (std::is_same_v<Item, int>) {
        return *a[index]->ifInt();
    } else if constexpr (std::is_same_v<Item, double>) {
        return *a[index]->ifFloat();
    } else {
        return *a[index]->ifString();
    }
}

template <class Array>
Value contains(LibraryState&, Arguments a) {
    const Array& array = listAt<Array>(a, 1);
    return std::find(array.begin(), array.end(), itemAt<Array>(a, 0)) != array.end();
}

/// The place of the item from an index on, or -1.
template <class Array>
Value find(LibraryState&, Arguments a) {
    const Array& array = listAt<Array>(a, 2);
    const int start = std::max(intAt(a, 1), 0);
    if (static_cast<std::size_t>(start) >= array.size()) return -1;
    const auto at = std::find(array.begin() + start, array.end(), itemAt<Array>(a, 0));
    return at == array.end() ? -1 : static_cast<int>(at - array.begin());
}

template <class Array>
Value count(LibraryState&, Arguments a) {
    const Array& array = listAt<Array>(a, 1);
    return static_cast<int>(std::count(array.begin(), array.end(), itemAt<Array>(a, 0)));
}

/// The second array without what is in the first.
template <class Array>
Value removed(LibraryState&, Arguments a) {
    const Array& unwanted = listAt<Array>(a, 0);
    const std::unordered_set<typename Array::value_type> out(unwanted.begin(), unwanted.end());
    Array kept;
    std::copy_if(listAt<Array>(a, 1).begin(), listAt<Array>(a, 1).end(), std::back_inserter(kept),
                 [&out](const auto& item) { return !out.contains(item); });
    return kept;
}

/// The second array, from which each item of the first takes out one of its like.
Value removedOnce(LibraryState&, Arguments a) {
    std::unordered_map<std::string_view, std::size_t> wanted;
    for (const std::string& item : listAt<StringArray>(a, 0))
        ++wanted[item];
    StringArray kept;
    for (const std::string& item : listAt<StringArray>(a, 1)) {
        const auto found = wanted.find(item);
        if (found == wanted.end() || found->second == 0) {
            kept.push_back(item);
        } else {
            --found->second;
        }
    }
    return kept;
}

/// The first of each.
Value withoutDuplicates(LibraryState&, Arguments a) {
    std::unordered_set<std::string_view> seen;
    StringArray kept;
    for (const std::string& item : listAt<StringArray>(a, 0)) {
        if (seen.insert(item).second) kept.push_back(item);
    }
    return kept;
}

template <class Array>
Value catenated(LibraryState& state, Arguments a) {
    Array both = listAt<Array>(a, 0);
    const Array& more = listAt<Array>(a, 1);
    checkArraySize(both.size() + more.size(), state.limits);
    both.insert(both.end(), more.begin(), more.end());
    return both;
}

/// Puts an item before the one at an index. Returns 1, or 0 for an index that lies outside.
template <class Array>
Value insertAt(LibraryState& state, Arguments a) {
    const int index = intAt(a, 0);
    Array& array = listToChange<Array>(a, 1);
    if (index < 0 || static_cast<std::size_t>(index) > array.size()) return 0;
    checkArraySize(array.size() + 1, state.limits);
    array.insert(array.begin() + index, itemAt<Array>(a, 2));
    return 1;
}

/// Takes the item at an index out. Returns 1, or 0 for an index that lies outside.
template <class Array>
Value removeAt(LibraryState&, Arguments a) {
    const int index = intAt(a, 0);
    Array& array = listToChange<Array>(a, 1);
    if (index < 0 || static_cast<std::size_t>(index) >= array.size()) return 0;
    array.erase(array.begin() + index);
    return 1;
}

/// Appends the first `count` items of the second array to the first.
Value append(LibraryState& state, Arguments a) {
    const StringArray more = listAt<StringArray>(a, 1); // may be the very array that grows
    auto& array = listToChange<StringArray>(a, 0);
    const std::size_t taken = std::min(static_cast<std::size_t>(std::max(intAt(a, 2), 0)), more.size());
    checkArraySize(array.size() + taken, state.limits);
    array.insert(array.end(), more.begin(), more.begin() + static_cast<std::ptrdiff_t>(taken));
    return {};
}

template <class Array>
Value joined(LibraryState& state, Arguments a) {
    const Array& items = listAt<Array>(a, 0);
    std::string text;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (i > 0) text += textAt(a, 1);
        text += Value(items[i]).asString();
        checkStringSize(text.size(), state.limits);
    }
    return text;
}

Value prefixed(LibraryState& state, Arguments a) {
    StringArray items = listAt<StringArray>(a, 0);
    for (std::string& item : items) {
        item.insert(0, textAt(a, 1));
        checkStringSize(item.size(), state.limits);
    }
    return items;
}

/// Items that do not begin with it stay as they are.
Value withoutPrefix(LibraryState&, Arguments a) {
    StringArray items = listAt<StringArray>(a, 0);
    for (std::string& item : items) {
        if (item.starts_with(textAt(a, 1))) item.erase(0, textAt(a, 1).size());
    }
    return items;
}

constexpr Builtin table[] = {
    valueRow("stringArrayContains", "sS", Type::Int, contains<StringArray>),
    valueRow("intArrayContains", "iI", Type::Int, contains<IntArray>),
    valueRow("floatArrayContains", "fF", Type::Int, contains<FloatArray>),
    valueRow("stringArrayFind", "siS", Type::Int, find<StringArray>),
    valueRow("intArrayFind", "iiI", Type::Int, find<IntArray>),
    valueRow("floatArrayFind", "fiF", Type::Int, find<FloatArray>),
    valueRow("stringArrayCount", "sS", Type::Int, count<StringArray>),
    valueRow("intArrayCount", "iI", Type::Int, count<IntArray>),
    valueRow("floatArrayCount", "fF", Type::Int, count<FloatArray>),
    valueRow("stringArrayRemove", "SS", Type::Strings, removed<StringArray>),
    valueRow("intArrayRemove", "II", Type::Ints, removed<IntArray>),
    valueRow("floatArrayRemove", "FF", Type::Floats, removed<FloatArray>),
    valueRow("stringArrayCatenate", "SS", Type::Strings, catenated<StringArray>),
    valueRow("intArrayCatenate", "II", Type::Ints, catenated<IntArray>),
    valueRow("floatArrayCatenate", "FF", Type::Floats, catenated<FloatArray>),
    valueRow("stringArrayInsertAtIndex", "iS&s", Type::Int, insertAt<StringArray>),
    valueRow("intArrayInsertAtIndex", "iI&i", Type::Int, insertAt<IntArray>),
    valueRow("floatArrayInsertAtIndex", "iF&f", Type::Int, insertAt<FloatArray>),
    valueRow("stringArrayRemoveAtIndex", "iS&", Type::Int, removeAt<StringArray>),
    valueRow("intArrayRemoveAtIndex", "iI&", Type::Int, removeAt<IntArray>),
    valueRow("floatArrayRemoveAtIndex", "iF&", Type::Int, removeAt<FloatArray>),
    valueRow("stringArrayToString", "Ss", Type::String, joined<StringArray>),
    valueRow("intArrayToString", "Is", Type::String, joined<IntArray>),
    valueRow("floatArrayToString", "Fs", Type::String, joined<FloatArray>),
    valueRow("stringArrayRemoveExact", "SS", Type::Strings, removedOnce),
    valueRow("stringArrayRemoveDuplicates", "S", Type::Strings, withoutDuplicates),
    valueRow("stringArrayAddPrefix", "Ss", Type::Strings, prefixed),
    valueRow("stringArrayRemovePrefix", "Ss", Type::Strings, withoutPrefix),
    valueRow("appendStringArray", "S&Si", Type::None, append),
};

} // namespace

std::span<const Builtin> listFunctions() { return table; }

} // namespace vesk::mel
