#include "host/geometry/mesh_index.h"

#include "host/geometry/mesh_patches.h"
#include "parallel/loops.h"

#include <embree3/rtcore.h>

#include <mutex>
#include <new>

namespace vesk::geom {

namespace {

/// The library works in single precision, in a cube from -1 to 1. Boxes get room for what rounding may do to
/// them, to the ray and to the places where they meet, several times over.
constexpr double rounding = 4e-6;
/// And for hits outside triangles up to this tolerance; wider ones go the plain way.
constexpr double widestTolerance = 1e-5;
/// No source farther away than this, in the cube, loses more than `rounding` on its way.
constexpr double farthest = 1e7;
/// Longer than any way through the cube.
constexpr double throughAll = 8;

struct Release {
    void operator()(RTCDevice device) const { rtcReleaseDevice(device); }
    void operator()(RTCScene scene) const { rtcReleaseScene(scene); }
};

using Device = std::unique_ptr<RTCDeviceTy, Release>;
using Scene = std::unique_ptr<RTCSceneTy, Release>;

/// One for the process, made anew when another number of threads is set. Scenes keep theirs.
Device device() {
    static std::mutex mutex;
    static Device current;
    static int threads = 0;
    const std::lock_guard lock(mutex);
    if (!current || threads != parallel::threads()) {
        threads = parallel::threads();
        current.reset(rtcNewDevice(("threads=" + std::to_string(threads)).c_str()));
    }
    if (!current) throw std::bad_alloc();
    rtcRetainDevice(current.get());
    return Device(current.get());
}

// --- making it
// --------------------------------------------------------------------------------------------------------

void giveBounds(const RTCBoundsFunctionArguments* arguments) {
    const auto& set = *static_cast<const PatchSet*>(arguments->geometryUserPtr);
    const Patch& patch = set.patches[arguments->primID];
    Box box(patch.point(0));
    for (std::size_t k = 1; k < 4; ++k)
        box.add(patch.point(k));
    const double room = widestTolerance * widthOf(patch) * set.cube.scale + rounding;
    const MVector least = set.cube(box.least), most = set.cube(box.most);
    const auto single = [](double value) { return static_cast<float>(value); };
    RTCBounds& out = *arguments->bounds_o;
    out.lower_x = single(least.x - room), out.lower_y = single(least.y - room);
    out.lower_z = single(least.z - room);
    out.upper_x = single(most.x + room), out.upper_y = single(most.y + room);
    out.upper_z = single(most.z + room);
}

void visitByRay(const RTCIntersectFunctionNArguments* arguments);

} // namespace

struct MeshIndex::Parts {
    explicit Parts(const Mesh& mesh);

    MeshTopologyPtr topology;
    PatchSet set;
    Scene scene;

    int triangleStart(int face) const {
        return topology->faceStart()[static_cast<std::size_t>(face)] - 2 * face;
    }
};

MeshIndex::Parts::Parts(const Mesh& mesh) : topology(mesh.topologyPtr()), set(mesh) {
    const Device maker = device();
    scene.reset(rtcNewScene(maker.get()));
    const RTCGeometry geometry = rtcNewGeometry(maker.get(), RTC_GEOMETRY_TYPE_USER);
    rtcSetGeometryUserPrimitiveCount(geometry, static_cast<unsigned>(set.patches.size()));
    rtcSetGeometryUserData(geometry, &set);
    rtcSetGeometryBoundsFunction(geometry, giveBounds, nullptr);
    rtcSetGeometryIntersectFunction(geometry, visitByRay);
    rtcCommitGeometry(geometry);
    rtcAttachGeometry(scene.get(), geometry);
    rtcReleaseGeometry(geometry);
    rtcCommitScene(scene.get());
    if (rtcGetDeviceError(maker.get()) == RTC_ERROR_OUT_OF_MEMORY) throw std::bad_alloc();
}

MeshIndex::MeshIndex(const Mesh& mesh) : parts_(std::make_unique<Parts>(mesh)) {}
MeshIndex::~MeshIndex() = default;

// --- rays
// -------------------------------------------------------------------------------------------------------------

namespace {

/// One query, as the library's call-back sees it.
struct RaySearch : RTCIntersectContext {
    const RayQuery& query;
    const PatchSet& set;
    std::vector<MeshHit>* all;                 ///< null for the first hit alone
    double tolerance, least;                   ///< of the params
    double cubePerParam = 0, paramAtStart = 0; ///< of the library's ray
    PassesBy passesBy;
    std::optional<MeshHit> best; ///< its triangle counted through the whole mesh, as are those of `all`

    RaySearch(const RayQuery& asked, const PatchSet& among, std::vector<MeshHit>* hits)
        : query(asked), set(among), all(hits), tolerance(asked.tolerance > 0 ? asked.tolerance : 0),
          least(asked.bothDirections ? -asked.maxParam : 0),
          passesBy(asked.ray.source, asked.ray.direction, tolerance * among.cube.diagonal(),
                   among.cube.largest) {
        rtcInitIntersectContext(this);
    }

    /// Whether there is a new first hit.
    bool visit(const Patch& patch) {
        if (passesBy(patch)) return false;
        bool isNew = false;
        for (int k = 0; k < patch.count; ++k) {
            const auto hit =
                hitTriangle(query.ray, patch.corner(k, 0), patch.corner(k, 1), patch.corner(k, 2), tolerance);
            if (!hit || !(hit->param >= least && hit->param <= query.maxParam)) continue;
            const MeshHit found{*hit, patch.faces[k], patch.triangle + k};
            if (all) {
                all->push_back(found);
            } else if (!best || isNearer(found, *best)) {
                best = found;
                isNew = true;
            }
        }
        return isNew;
    }
    static bool isNearer(const MeshHit& a, const MeshHit& b) {
        const double atA = std::abs(a.param), atB = std::abs(b.param);
        return atA < atB || (atA == atB && a.triangle < b.triangle);
    }
    /// How far the library need look from where its ray starts; below 0 for not at all.
    float reach() const {
        const double param = best ? std::abs(best->param) : query.maxParam;
        const double reach = (param - paramAtStart) * cubePerParam;
        return static_cast<float>(std::min(reach, throughAll) * (1 + 1e-6) + rounding);
    }
};

void visitByRay(const RTCIntersectFunctionNArguments* arguments) {
    auto& search = *static_cast<RaySearch*>(arguments->context);
    if (search.visit(search.set.patches[arguments->primID]))
        RTCRayN_tfar(RTCRayHitN_RayN(arguments->rayhit, 1), 1, 0) = search.reach();
}

/// Nearer to the cube's centre single precision is as good as in it.
constexpr double nearEnough = 2;

/// Where a line that starts farther out enters the box of all hits, and false when it does not.
bool enters(const MVector& source, const MVector& direction, const MVector& half, double& start) {
    double end = std::numeric_limits<double>::infinity();
    start = 0;
    if (std::max({std::abs(source.x), std::abs(source.y), std::abs(source.z)}) <= nearEnough) return true;
    for (unsigned axis = 0; axis < 3; ++axis) {
        const double wide = half[axis] + 4 * widestTolerance + 2 * rounding;
        const double at = source[axis], step = direction[axis];
        if (step == 0) {
            if (std::abs(at) > wide) return false;
            continue;
        }
        const double a = (-wide - at) / step, b = (wide - at) / step;
        start = std::max(start, std::min(a, b));
        end = std::min(end, std::max(a, b));
    }
    return start <= end;
}

/// Along one half of the line.
void shoot(RaySearch& search, RTCScene scene, double sign) {
    const UnitCube& cube = search.set.cube;
    const double length = search.query.ray.direction.length();
    const MVector source = cube(search.query.ray.source);
    const MVector direction = search.query.ray.direction * (sign / length);
    double start = 0;
    if (!enters(source, direction, cube.half, start)) return;
    search.cubePerParam = length * cube.scale;
    search.paramAtStart = start / search.cubePerParam;
    const MVector from = source + direction * start;
    const auto single = [](double value) { return static_cast<float>(value); };
    RTCRayHit rayHit{};
    RTCRay& ray = rayHit.ray;
    ray.org_x = single(from.x), ray.org_y = single(from.y), ray.org_z = single(from.z);
    ray.dir_x = single(direction.x), ray.dir_y = single(direction.y), ray.dir_z = single(direction.z);
    ray.tfar = search.reach();
    ray.mask = ~0u;
    rayHit.hit.geomID = RTC_INVALID_GEOMETRY_ID;
    if (ray.tfar >= 0) rtcIntersect1(scene, &search, &rayHit);
}

void run(RaySearch& search, RTCScene scene) {
    const Ray& ray = search.query.ray;
    if (!isFinite(ray.source) || !isFinite(ray.direction) || !(search.query.maxParam >= 0)) return;
    if (search.tolerance > widestTolerance || !(search.set.cube(ray.source).length() < farthest)) {
        for (const Patch& patch : search.set.patches)
            search.visit(patch);
    } else if (ray.direction * ray.direction > 0) {
        shoot(search, scene, 1);
        if (search.query.bothDirections) shoot(search, scene, -1);
    }
}

} // namespace

std::optional<MeshHit> MeshIndex::firstHit(const RayQuery& query) const {
    RaySearch search(query, parts_->set, nullptr);
    run(search, parts_->scene.get());
    if (search.best) search.best->triangle -= parts_->triangleStart(search.best->face);
    return search.best;
}

std::vector<MeshHit> MeshIndex::allHits(const RayQuery& query) const {
    std::vector<MeshHit> hits;
    RaySearch search(query, parts_->set, &hits);
    run(search, parts_->scene.get());
    const auto key = [](const MeshHit& hit) { return std::pair(hit.param, hit.triangle); };
    std::sort(hits.begin(), hits.end(), [&](const MeshHit& a, const MeshHit& b) { return key(a) < key(b); });
    // Those at the source are met both ways.
    hits.erase(std::unique(hits.begin(), hits.end(),
                           [&](const MeshHit& a, const MeshHit& b) { return key(a) == key(b); }),
               hits.end());
    for (MeshHit& hit : hits)
        hit.triangle -= parts_->triangleStart(hit.face);
    return hits;
}

// --- nearest points
// ---------------------------------------------------------------------------------------------------

namespace {

struct PointSearch {
    const PatchSet& set;
    const MVector p;
    const double slack; ///< how far what the library takes for `p` may lie from it, in the cube
    double bestSquared;
    double reach = 0, squaredReach = 0; ///< nothing farther away can be the nearest, whatever rounding does
    const Patch* patch = nullptr;
    int place = 0; ///< in the patch
    TrianglePoint found;

    PointSearch(const PatchSet& among, const MVector& from, double slackInCube, double maxDistance)
        : set(among), p(from), slack(slackInCube), bestSquared(maxDistance * maxDistance) {
        updateReach();
    }

    /// Whether a triangle is the nearest so far.
    bool visit(const Patch& candidate) {
        if (isBeyondReach(candidate)) return false;
        bool isNew = false;
        for (int k = 0; k < candidate.count; ++k) {
            const TrianglePoint nearest =
                closestOnTriangle(p, candidate.corner(k, 0), candidate.corner(k, 1), candidate.corner(k, 2));
            const double squared = (p - nearest.point) * (p - nearest.point);
            const bool isTie =
                squared == bestSquared && (!patch || candidate.triangle + k < patch->triangle + place);
            if (!(squared < bestSquared || isTie)) continue;
            bestSquared = squared;
            patch = &candidate;
            place = k;
            found = nearest;
            isNew = true;
        }
        if (isNew) updateReach();
        return isNew;
    }
    /// For the library's boxes, in the cube.
    float radius() const {
        const double radius = reach * set.cube.scale;
        return radius < 1e18 ? static_cast<float>(radius) : std::numeric_limits<float>::infinity();
    }

  private:
    /// Whether a plane across the line from the patch's middle to `p` keeps the patch out of reach: half the
    /// work of the distances, and true of most patches that the library's boxes let through.
    bool isBeyondReach(const Patch& candidate) const {
        std::array<MVector, 4> from;
        MVector sum;
        for (std::size_t k = 0; k < 4; ++k)
            sum += from[k] = p - candidate.point(k);
        const double least =
            std::min(std::min(from[0] * sum, from[1] * sum), std::min(from[2] * sum, from[3] * sum));
        return least > 0 && least * least > squaredReach * (sum * sum);
    }
    void updateReach() {
        reach = std::sqrt(bestSquared) * (1 + 1e-5) + slack / set.cube.scale;
        squaredReach = reach * reach;
    }
};

bool visitByPoint(RTCPointQueryFunctionArguments* arguments) {
    auto& search = *static_cast<PointSearch*>(arguments->userPtr);
    if (!search.visit(search.set.patches[arguments->primID])) return false;
    arguments->query->radius = search.radius();
    return true;
}

} // namespace

std::optional<MeshPoint> MeshIndex::closestPoint(const MVector& p, double maxDistance) const {
    if (!isFinite(p) || !(maxDistance >= 0)) return std::nullopt;
    const MVector at = parts_->set.cube(p);
    const double size = std::max({std::abs(at.x), std::abs(at.y), std::abs(at.z)});
    PointSearch search(parts_->set, p, rounding + 1e-6 * size, maxDistance);
    RTCPointQuery query{};
    if (size < 1e15) {
        query.x = static_cast<float>(at.x), query.y = static_cast<float>(at.y);
        query.z = static_cast<float>(at.z);
        query.radius = search.radius();
    } else { // too far for single precision: all triangles are as near
        query.radius = std::numeric_limits<float>::infinity();
    }
    RTCPointQueryContext context;
    rtcInitPointQueryContext(&context);
    rtcPointQuery(parts_->scene.get(), &query, &context, visitByPoint, &search);
    if (!search.patch) return std::nullopt;
    MeshPoint result{search.found, search.patch->faces[search.place], 0, search.bestSquared};
    result.triangle = search.patch->triangle + search.place - parts_->triangleStart(result.face);
    return result;
}

std::size_t MeshIndex::byteSize() const {
    return sizeof(Parts) + parts_->set.patches.capacity() * sizeof(Patch);
}

} // namespace vesk::geom
