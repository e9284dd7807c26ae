#include "host/api/impl/handles.h"
#include "host/api/impl/result.h"
#include "host/data/component.h"

#include <maya/MFnDoubleIndexedComponent.h>
#include <maya/MFnSingleIndexedComponent.h>
#include <maya/MFnTripleIndexedComponent.h>

#include <span>

using vesk::Component;
using vesk::DoubleComponent;
using vesk::IndexedComponent;
using vesk::SingleComponent;
using vesk::TripleComponent;
using vesk::api::answer;
using vesk::api::behind;
using vesk::api::report;

namespace {

/// The component behind a set whose objects all have N indices.
template <int N>
IndexedComponent<N>* indexed(const MObject& object) {
    return static_cast<IndexedComponent<N>*>(object.hostObject());
}

template <int N>
MObject createOf(MFn::Type kind, MObject& object, MStatus* status) {
    const bool valid = Component::dimensionsOf(kind) == N;
    object = valid ? MObject(new IndexedComponent<N>(kind)) : MObject();
    return answer(status, object, valid ? MStatus::kSuccess : MStatus::kInvalidParameter);
}

template <int N>
MStatus addAll(const MObject& object, const std::array<const MIntArray*, N>& indices) {
    const unsigned int count = indices[0]->length();
    for (const MIntArray* array : indices) {
        if (array->length() != count) return MStatus::kInvalidParameter;
    }
    MStatus status;
    for (unsigned int i = 0; i < count; ++i) {
        typename IndexedComponent<N>::Element element;
        for (int k = 0; k < N; ++k)
            element[k] = (*indices[k])[i];
        if (!indexed<N>(object)->add(element)) status = MStatus::kInvalidParameter;
    }
    return status;
}

template <int N>
MStatus getAll(const MObject& object, const std::array<MIntArray*, N>& indices) {
    for (MIntArray* array : indices)
        array->clear();
    if (object.isNull()) return MStatus::kInvalidParameter;
    const auto& component = *indexed<N>(object);
    const auto count = static_cast<unsigned int>(component.count());
    for (MIntArray* array : indices)
        array->setLength(count);
    for (unsigned int i = 0; i < count; ++i) {
        const auto element = component.at(i);
        for (int k = 0; k < N; ++k)
            (*indices[k])[i] = element[k];
    }
    return {};
}

/// Writes the element at a position to `indices`.
template <int N>
MStatus getOne(const MObject& object, int position, const std::array<int*, N>& indices) {
    if (object.isNull() || position < 0) return MStatus::kInvalidParameter;
    const auto& component = *indexed<N>(object);
    if (static_cast<std::size_t>(position) >= component.count()) return MStatus::kInvalidParameter;
    const auto element = component.at(static_cast<std::size_t>(position));
    for (int k = 0; k < N; ++k)
        *indices[k] = element[k];
    return {};
}

template <int N>
MStatus setSizes(const MObject& object, MStatus writable, const std::array<int, N>& sizes) {
    if (!writable) return writable;
    return indexed<N>(object)->setComplete(sizes) ? MStatus::kSuccess : MStatus::kInvalidParameter;
}

template <int N>
MStatus getSizes(const MObject& object, const std::array<int*, N>& sizes) {
    if (object.isNull()) return MStatus::kInvalidParameter;
    const auto known = indexed<N>(object)->sizes();
    if (!known) return MStatus::kFailure;
    for (int k = 0; k < N; ++k)
        *sizes[k] = (*known)[k];
    return {};
}

} // namespace

// All components.

MFnComponent::MFnComponent(MObject& object, MStatus* status) { attach(object, status); }
MFnComponent::MFnComponent(const MObject& object, MStatus* status) { attach(object, status); }

bool MFnComponent::accepts(const vesk::Object& object) const {
    return dynamic_cast<const Component*>(&object) != nullptr;
}

Component* MFnComponent::component() const { return static_cast<Component*>(object_.hostObject()); }

bool MFnComponent::isEmpty(MStatus* status) const {
    if (!component()) return answer(status, true, MStatus::kInvalidParameter);
    return answer(status, component()->isEmpty());
}

bool MFnComponent::isEqual(const MObject& other, MStatus* status) const {
    const Component* compared = behind<const Component>(other);
    if (!component() || !compared) return answer(status, false, MStatus::kInvalidParameter);
    return answer(status, component()->isEqual(*compared));
}

bool MFnComponent::isComplete(MStatus* status) const {
    if (!component()) return answer(status, false, MStatus::kInvalidParameter);
    return answer(status, component()->isComplete());
}

MStatus MFnComponent::setComplete(bool complete) {
    const MStatus status = writableStatus();
    if (!status) return status;
    if (!complete) {
        component()->setListed();
    } else if (!component()->isComplete()) {
        component()->setComplete();
    }
    return status;
}

int MFnComponent::elementCount(MStatus* status) const {
    if (!component()) return answer(status, 0, MStatus::kInvalidParameter);
    return answer(status, static_cast<int>(component()->count()));
}

MFn::Type MFnComponent::componentType(MStatus* status) const {
    if (!component()) return answer(status, MFn::kInvalid, MStatus::kInvalidParameter);
    return answer(status, component()->apiType());
}

// One index.

MFnSingleIndexedComponent::MFnSingleIndexedComponent(MObject& object, MStatus* status) {
    attach(object, status);
}
MFnSingleIndexedComponent::MFnSingleIndexedComponent(const MObject& object, MStatus* status) {
    attach(object, status);
}

bool MFnSingleIndexedComponent::accepts(const vesk::Object& object) const {
    return dynamic_cast<const SingleComponent*>(&object) != nullptr;
}

MObject MFnSingleIndexedComponent::create(MFn::Type kind, MStatus* status) {
    return createOf<1>(kind, object_, status);
}

MStatus MFnSingleIndexedComponent::addElement(int element) {
    const MStatus status = writableStatus();
    if (!status) return status;
    return indexed<1>(object_)->add({element}) ? MStatus::kSuccess : MStatus::kInvalidParameter;
}

MStatus MFnSingleIndexedComponent::addElements(const MIntArray& elements) {
    const MStatus status = writableStatus();
    return status ? addAll<1>(object_, {&elements}) : status;
}

int MFnSingleIndexedComponent::element(int position, MStatus* status) const {
    int element = -1;
    report(status, getOne<1>(object_, position, {&element}));
    return element;
}

MStatus MFnSingleIndexedComponent::getElements(MIntArray& elements) const {
    return getAll<1>(object_, {&elements});
}

MStatus MFnSingleIndexedComponent::setCompleteData(int count) {
    return setSizes<1>(object_, writableStatus(), {count});
}

MStatus MFnSingleIndexedComponent::getCompleteData(int& count) const {
    return getSizes<1>(object_, {&count});
}

// Two indices.

MFnDoubleIndexedComponent::MFnDoubleIndexedComponent(MObject& object, MStatus* status) {
    attach(object, status);
}
MFnDoubleIndexedComponent::MFnDoubleIndexedComponent(const MObject& object, MStatus* status) {
    attach(object, status);
}

bool MFnDoubleIndexedComponent::accepts(const vesk::Object& object) const {
    return dynamic_cast<const DoubleComponent*>(&object) != nullptr;
}

MObject MFnDoubleIndexedComponent::create(MFn::Type kind, MStatus* status) {
    return createOf<2>(kind, object_, status);
}

MStatus MFnDoubleIndexedComponent::addElement(int u, int v) {
    const MStatus status = writableStatus();
    if (!status) return status;
    return indexed<2>(object_)->add({u, v}) ? MStatus::kSuccess : MStatus::kInvalidParameter;
}

MStatus MFnDoubleIndexedComponent::addElements(const MIntArray& u, const MIntArray& v) {
    const MStatus status = writableStatus();
    return status ? addAll<2>(object_, {&u, &v}) : status;
}

MStatus MFnDoubleIndexedComponent::getElement(int position, int& u, int& v) const {
    return getOne<2>(object_, position, {&u, &v});
}

MStatus MFnDoubleIndexedComponent::getElements(MIntArray& u, MIntArray& v) const {
    return getAll<2>(object_, {&u, &v});
}

MStatus MFnDoubleIndexedComponent::setCompleteData(int countU, int countV) {
    return setSizes<2>(object_, writableStatus(), {countU, countV});
}

MStatus MFnDoubleIndexedComponent::getCompleteData(int& countU, int& countV) const {
    return getSizes<2>(object_, {&countU, &countV});
}

// Three indices.

MFnTripleIndexedComponent::MFnTripleIndexedComponent(MObject& object, MStatus* status) {
    attach(object, status);
}
MFnTripleIndexedComponent::MFnTripleIndexedComponent(const MObject& object, MStatus* status) {
    attach(object, status);
}

bool MFnTripleIndexedComponent::accepts(const vesk::Object& object) const {
    return dynamic_cast<const TripleComponent*>(&object) != nullptr;
}

MObject MFnTripleIndexedComponent::create(MFn::Type kind, MStatus* status) {
    return createOf<3>(kind, object_, status);
}

MStatus MFnTripleIndexedComponent::addElement(int s, int t, int u) {
    const MStatus status = writableStatus();
    if (!status) return status;
    return indexed<3>(object_)->add({s, t, u}) ? MStatus::kSuccess : MStatus::kInvalidParameter;
}

MStatus MFnTripleIndexedComponent::addElements(const MIntArray& s, const MIntArray& t, const MIntArray& u) {
    const MStatus status = writableStatus();
    return status ? addAll<3>(object_, {&s, &t, &u}) : status;
}

MStatus MFnTripleIndexedComponent::getElement(int position, int& s, int& t, int& u) const {
    return getOne<3>(object_, position, {&s, &t, &u});
}

MStatus MFnTripleIndexedComponent::getElements(MIntArray& s, MIntArray& t, MIntArray& u) const {
    return getAll<3>(object_, {&s, &t, &u});
}

MStatus MFnTripleIndexedComponent::setCompleteData(int countS, int countT, int countU) {
    return setSizes<3>(object_, writableStatus(), {countS, countT, countU});
}

MStatus MFnTripleIndexedComponent::getCompleteData(int& countS, int& countT, int& countU) const {
    return getSizes<3>(object_, {&countS, &countT, &countU});
}
