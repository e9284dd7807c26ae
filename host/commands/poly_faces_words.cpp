#include "host/commands/poly_faces_words.h"

#include "host/commands/data_words.h"
#include "host/commands/packed.h"
#include "host/data/packed_data.h"

namespace vesk::commands {

namespace {

constexpr int kNoCode = -1;

int codeOf(std::string_view word) {
    if (word == "f") return PolyFacesData::Face;
    if (word == "mu") return PolyFacesData::Uvs;
    if (word == "mc") return PolyFacesData::Colors;
    if (word == "h") return PolyFacesData::Hole;
    if (word == "fc") return PolyFacesData::OldColors;
    if (word == "mf") return PolyFacesData::OldUvs;
    if (word == "mh") return PolyFacesData::OldHoleUvs;
    return kNoCode;
}

/// Where the records of a face begin.
std::size_t startOfFace(const PolyFacesData& data, int face, std::size_t from = 0) {
    std::size_t at = from;
    int seen = 0;
    while (at < data.codes.size()) {
        if (data.codes[at] == PolyFacesData::Face && seen++ == face) return at;
        const std::size_t head = PolyFacesData::hasSet(data.codes[at]) ? 2 : 1;
        at += head + 1 + static_cast<std::size_t>(data.codes[at + head]);
    }
    return at;
}

Outcome replaceFaces(PolyFacesData& data, int first, int count, Words& words) {
    std::vector<int> fresh;
    const auto faces = readFaceRecords(words, fresh);
    if (!faces) return Outcome::fail(faces.error());
    if (*faces != static_cast<std::size_t>(count)) {
        return Outcome::fail(std::to_string(*faces) + " faces are given where " + std::to_string(count) +
                             " are named.");
    }
    const std::size_t begin = startOfFace(data, first);
    const std::size_t end = startOfFace(data, count, begin);
    const auto at = data.codes.begin();
    data.codes.erase(at + static_cast<std::ptrdiff_t>(begin), at + static_cast<std::ptrdiff_t>(end));
    data.codes.insert(data.codes.begin() + static_cast<std::ptrdiff_t>(begin), fresh.begin(), fresh.end());
    data.faceCount = std::max(data.faceCount, first + count);
    return {};
}

Outcome appendFaces(PolyFacesData& data, int count, Words& words) {
    const std::size_t before = data.codes.size();
    const auto faces = readFaceRecords(words, data.codes);
    std::string error = faces.error();
    if (faces && *faces != static_cast<std::size_t>(count)) {
        error = std::to_string(*faces) + " faces are given where " + std::to_string(count) + " are named.";
    }
    if (!error.empty()) {
        data.codes.resize(before);
        return Outcome::fail(std::move(error));
    }
    data.faceCount += count;
    return {};
}

} // namespace

Result<std::size_t> readFaceRecords(Words& words, std::vector<int>& codes, std::string_view taken) {
    std::size_t faces = 0;
    while (!taken.empty() || !words.atEnd()) {
        const std::string_view word = taken.empty() ? words.text() : std::exchange(taken, {});
        const int code = codeOf(word);
        if (code == kNoCode) {
            return Outcome::fail("'" + std::string(word) + "' is not a record of polyFaces data.");
        }
        if (code == PolyFacesData::Face) {
            ++faces;
        } else if (faces == 0) {
            return Outcome::fail("PolyFaces data begins with a face, not with '" + std::string(word) + "'.");
        }
        codes.push_back(code);
        if (PolyFacesData::hasSet(code)) {
            int set = 0;
            if (words.numbers(&set, 1) != 1 || set < 0) {
                return Outcome::fail("The index of a set is missing in polyFaces data.");
            }
            codes.push_back(set);
        }
        const auto count = readCount(words, 1, "ids of a face");
        if (!count) return Outcome::fail(count.error());
        codes.push_back(static_cast<int>(*count));
        const std::size_t at = codes.size();
        codes.resize(at + *count);
        const std::size_t read = words.numbers(codes.data() + at, *count);
        if (read < *count) return badElement(read, words);
    }
    return faces;
}

Outcome assignPolyFaces(graph::Cell& array, int first, int last, Words& words) {
    if (auto outcome = graph::checkWritable(array); !outcome) return outcome;
    Ref<PolyFacesData> data = takeToWrite<PolyFacesData>(array);
    if (!data) data = makeRef<PolyFacesData>();
    if (first > data->faceCount) {
        return Outcome::fail("Face " + std::to_string(first) + " of '" + graph::Plug(array).name() +
                             "' cannot be set before the faces in front of it.");
    }
    const long long count = static_cast<long long>(last) - first + 1;
    if (static_cast<unsigned long long>(count) > words.mostLeft()) {
        return Outcome::fail("There are fewer faces than the elements [" + std::to_string(first) + ":" +
                             std::to_string(last) + "] of '" + graph::Plug(array).name() + "' need.");
    }
    const auto faces = static_cast<int>(count);
    auto outcome = first == data->faceCount ? appendFaces(*data, faces, words)
                                            : replaceFaces(*data, first, faces, words);
    if (outcome) placeWritten(array, data);
    return outcome;
}

} // namespace vesk::commands
