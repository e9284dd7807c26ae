#pragma once
// What a mesh derives from its points and keeps until they change.

#include "host/geometry/mesh.h"
#include "host/geometry/mesh_index.h"

#include <atomic>
#include <mutex>

namespace vesk::geom {

/// A value made on first use, once, whoever asks and from however many threads.
template <class T>
class MadeOnce {
  public:
    template <class Make>
    const T& get(Make&& make) {
        if (made_.load(std::memory_order_acquire)) [[likely]]
            return value_;
        std::call_once(once_, [&] {
            value_ = std::forward<Make>(make)();
            made_.store(true, std::memory_order_release);
        });
        return value_;
    }
    /// The value if it has been made, else null.
    const T* made() const { return made_.load(std::memory_order_acquire) ? &value_ : nullptr; }

  private:
    std::once_flag once_;
    std::atomic<bool> made_{false};
    T value_{};
};

/// Shared by the copies of a mesh for as long as they hold the same points, hard edges and locked normals.
class MeshCache {
  public:
    using Vectors = std::vector<MFloatVector>;

    MadeOnce<Vectors> faceNormals, vertexNormals, weightedVertexNormals, cornerNormals;
    MadeOnce<std::vector<TriangleCorners>> triangles;
    MadeOnce<std::unique_ptr<const MeshIndex>> index;

    /// Whether anything in here would be out of date after a change.
    bool holdsAnything() const {
        return faceNormals.made() || vertexNormals.made() || weightedVertexNormals.made() ||
               cornerNormals.made() || triangles.made() || index.made();
    }
    std::size_t byteSize() const {
        std::size_t bytes = 0;
        for (const auto* kept : {&faceNormals, &vertexNormals, &weightedVertexNormals, &cornerNormals}) {
            if (const Vectors* vectors = kept->made()) bytes += vectors->capacity() * sizeof(MFloatVector);
        }
        if (const auto* kept = triangles.made()) bytes += kept->capacity() * sizeof(TriangleCorners);
        if (const auto* kept = index.made()) bytes += (*kept)->byteSize();
        return bytes;
    }
};

} // namespace vesk::geom
