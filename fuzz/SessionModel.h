// What a fuzz input of a camera session holds, as plain data, and how it is
// read from (or written to) fuzzer bytes. Value ranges lean on what the library
// compares against, and every field can still take any value of its type.
#ifndef UILAYER_FUZZ_SESSION_MODEL_H
#define UILAYER_FUZZ_SESSION_MODEL_H

#include <HostKit/CameraTable.h>
#include <HostKit/Capture.h>
#include <HostKit/StreamConfig.h>

#include <cstdint>
#include <string>
#include <vector>

#include "FuzzCodec.h"

namespace UilayerFuzz {

// ---------------- Plain data ----------------

// One metadata entry: a vendor tag by index or a standard tag by id, with
// `count` elements of the tag's own type in `data`.
struct TagEntry {
    bool vendor = true;
    uint32_t tag = 0;
    uint32_t count = 0;
    std::vector<uint8_t> data;
};

struct PropertyInput {
    uint8_t name = 0;  // index into the properties the library reads
    std::string value;
};

struct FileInput {
    uint8_t physicalId = 0;  // warm start file of this camera id
    std::string text;
};

// One physical camera entry of a record, as the kit writes it.
using CameraEntryInput = HostKit::PhysicalCamera;

// One camera of the HAL's table and the sibling's record in its
// characteristics.
struct CameraInput {
    bool hasRecord = true;
    bool shortRecord = false;  // a payload too short to be a record
    uint32_t frameworkId = 0;
    uint32_t logicalCamId = 0;
    uint32_t numPhysicalCameras = 0;  // as written in the record
    std::vector<CameraEntryInput> entries;
    bool hasSensorName = true;
    std::string sensorName;
    uint32_t type = 0;
    uint32_t fullArrayWidth = 0;
    uint32_t fullArrayHeight = 0;
    uint32_t numSensorModes = 0;  // as written in the record
    std::vector<uint16_t> sensorModeFlags;
};

enum PhysicalIdKind : uint8_t { kIdNull = 0, kIdEmpty = 1, kIdText = 2 };

// A stream as the kit describes it; the physical camera id is null, empty
// or the text, by `physicalIdKind`.
struct StreamInput : HostKit::StreamSetup {
    bool null = false;
    uint8_t physicalIdKind = kIdEmpty;
};

enum StepKind : uint8_t {
    kStepRequest,
    kStepResult,
    kStepReconfigure,
    kStepSessionCaps,
    kStepStreamLists,
    kStepStreamQueries,
    kStepRequestQueries,
    kStepSensorMode,
    kStepWarmStart,
    kStepCapsMask,
    kStepAccessors,
    kStepRemapZoomRatio,
    kStepCount
};

// A buffer of a request: a configured stream by position, or (past the
// configured ones) a stream the session never saw, or a null stream.
struct BufferInput {
    uint8_t stream = 0;
};

struct Step {
    uint8_t kind = kStepRequest;
    // Request and result.
    uint32_t frame = 0;
    bool hasMetadata = true;  // request settings / result metadata
    std::vector<TagEntry> tags;
    std::vector<BufferInput> buffers;
    bool nullBufferArray = false;
    // Result.
    bool hasAec = false;
    std::vector<HostKit::AecRecord> aec;
    uint32_t aecBytes = 0;  // payload length cut to this many bytes (0: whole)
    bool hasMlft = false;
    uint32_t mlftBytes = 0;
    uint32_t mlft = 0;
    // Queries.
    uint8_t caps = 0;  // capability number, below 100
    uint32_t type = 0;
    int32_t streamType = 0;
    uint64_t capsLow = 0, capsHigh = 0;
    uint8_t streamRef = 0;
    std::string text;
    bool nullText = false;
    int32_t skip = 0;
};

struct SessionInput {
    std::string configText;
    std::vector<PropertyInput> properties;
    uint8_t logSwitches = 0;  // bits: error, warning, info, verbose, system
    bool hasWireless = false;
    std::string wireless;
    std::vector<FileInput> warmStartFiles;
    std::vector<CameraInput> cameras;
    uint32_t cameraId = 0;  // the framework id whose parser is used
    uint32_t operationMode = 0;
    bool nullSessionParams = false;
    std::vector<TagEntry> sessionParams;
    bool nullStreamArray = false;
    std::vector<StreamInput> streams;
    std::vector<Step> steps;
};

// The properties the library reads, by the index a PropertyInput holds.
extern const char* const kPropertyNames[];
extern const uint8_t kPropertyCount;

// Element size of a tag's entries (1 for a tag the metadata does not know).
size_t ElementSize(bool vendor, uint32_t tag);

// ---------------- Limits ----------------

constexpr size_t kMaxConfigText = 16384;
constexpr size_t kMaxCameras = 8;
constexpr size_t kMaxStreams = 10;
constexpr size_t kMaxSteps = 48;
constexpr size_t kMaxTags = 16;
constexpr uint32_t kMaxTagCount = 200;
constexpr size_t kMaxBuffers = 8;
constexpr size_t kMaxAecRecords = 10;
constexpr uint32_t kMaxMlftBytes = 1900;

// ---------------- Visitors ----------------

template <typename Codec>
void VisitTagList(Codec& c, std::vector<TagEntry>& tags, const std::vector<uint32_t>& vendor,
                  const std::vector<uint32_t>& standard) {
    List(c, tags, kMaxTags, [&](Codec& c2, TagEntry& e) {
        // A tag the library reads, or any vendor index, or any tag id.
        uint8_t choice = 0;
        const uint8_t known = static_cast<uint8_t>(vendor.size() + standard.size());
        if (!Codec::kDecoding) {
            choice = known;
            for (size_t i = 0; i < vendor.size(); ++i) {
                if (e.vendor && e.tag == vendor[i]) {
                    choice = static_cast<uint8_t>(i);
                }
            }
            for (size_t i = 0; i < standard.size(); ++i) {
                if (!e.vendor && e.tag == standard[i]) {
                    choice = static_cast<uint8_t>(vendor.size() + i);
                }
            }
        }
        c2.Int(choice, uint8_t{0}, known);
        if (choice < vendor.size()) {
            e.vendor = true;
            e.tag = vendor[choice];
        } else if (choice < known) {
            e.vendor = false;
            e.tag = standard[choice - vendor.size()];
        } else {
            Bool(c2, e.vendor);
            if (e.vendor) {
                c2.Int(e.tag, uint32_t{0}, uint32_t{1100});
            } else {
                c2.Int(e.tag, uint32_t{0}, UINT32_MAX);
            }
        }
        c2.Int(e.count, uint32_t{0}, kMaxTagCount);
        const size_t bytes = static_cast<size_t>(e.count) * ElementSize(e.vendor, e.tag);
        c2.Bytes(e.data, bytes);
    });
}

template <typename Codec>
void VisitStep(Codec& c, Step& s) {
    static const std::vector<uint32_t> kRequestVendor = {49, 0, 19, 35, 36, 37, 38, 159, 535, 544};
    static const std::vector<uint32_t> kRequestStandard = {0x1002F};
    static const std::vector<uint32_t> kResultVendor = {156, 175};
    static const uint32_t kTypes[] = {7, 0, 1, 2, 3, 4, 5, 8, 15, 16, 255, 256, 0x107};
    static const uint32_t kFrames[] = {0, 1, 2, 3, 255, 256, 257, 511, 65535, 0xFFFFFFFFu};

    c.Int(s.kind, uint8_t{0}, static_cast<uint8_t>(kStepCount - 1));
    switch (s.kind) {
        case kStepRequest:
            Pick(c, s.frame, kFrames);
            Bool(c, s.hasMetadata);
            if (s.hasMetadata) {
                VisitTagList(c, s.tags, kRequestVendor, kRequestStandard);
            }
            Bool(c, s.nullBufferArray);
            List(c, s.buffers, kMaxBuffers,
                 [](Codec& c2, BufferInput& b) { c2.Int(b.stream, uint8_t{0}, uint8_t{255}); });
            break;
        case kStepResult:
            Pick(c, s.frame, kFrames);
            Bool(c, s.hasMetadata);
            if (!s.hasMetadata) {
                break;
            }
            Bool(c, s.hasAec);
            if (s.hasAec) {
                List(c, s.aec, kMaxAecRecords, [](Codec& c2, HostKit::AecRecord& r) {
                    Small(c2, r.cameraId, int32_t{-1}, int32_t{9});
                    Float(c2, r.aecValue1);
                    Float(c2, r.aecValue2);
                    Small(c2, r.expCount, int32_t{0}, int32_t{5});
                    c2.Int(r.extra, uint32_t{0}, UINT32_MAX);
                });
                c.Int(s.aecBytes, uint32_t{0}, uint32_t{255});
            }
            Bool(c, s.hasMlft);
            if (s.hasMlft) {
                c.Int(s.mlftBytes, uint32_t{0}, kMaxMlftBytes);
                Small(c, s.mlft, uint32_t{0}, uint32_t{2});
            }
            VisitTagList(c, s.tags, kResultVendor, {});
            break;
        case kStepSessionCaps:
        case kStepCapsMask:
            c.Int(s.caps, uint8_t{0}, uint8_t{99});
            Pick(c, s.type, kTypes);
            break;
        case kStepStreamLists:
            Small(c, s.streamType, int32_t{-2}, int32_t{17});
            Pick(c, s.frame, kFrames);
            break;
        case kStepStreamQueries:
            c.Int(s.streamRef, uint8_t{0}, uint8_t{255});
            c.Int(s.frame, uint32_t{0}, UINT32_MAX);  // camera index
            break;
        case kStepRequestQueries:
            Pick(c, s.frame, kFrames);
            c.Int(s.caps, uint8_t{0}, uint8_t{99});
            Pick(c, s.type, kTypes);
            Small(c, s.streamType, int32_t{-2}, int32_t{17});
            break;
        case kStepSensorMode:
            c.Int(s.capsLow, uint64_t{0}, UINT64_MAX);
            c.Int(s.capsHigh, uint64_t{0}, UINT64_MAX);
            Pick(c, s.type, kTypes);
            break;
        case kStepWarmStart:
            Pick(c, s.type, kTypes);
            break;
        case kStepRemapZoomRatio:
            Bool(c, s.nullText);
            if (!s.nullText) {
                c.String(s.text, 96);
            }
            Small(c, s.skip, int32_t{0}, int32_t{1});
            break;
        default:
            break;
    }
}

template <typename Codec>
void VisitSteps(Codec& c, std::vector<Step>& steps) {
    List(c, steps, kMaxSteps, [](Codec& c2, Step& s) { VisitStep(c2, s); });
}

template <typename Codec>
void VisitCamera(Codec& c, CameraInput& cam) {
    Bool(c, cam.hasRecord);
    if (!cam.hasRecord) {
        return;
    }
    Bool(c, cam.shortRecord);
    Small(c, cam.frameworkId, uint32_t{0}, uint32_t{15});
    Small(c, cam.logicalCamId, uint32_t{0}, uint32_t{17});
    Small(c, cam.numPhysicalCameras, uint32_t{0}, uint32_t{9});
    List(c, cam.entries, 8, [](Codec& c2, CameraEntryInput& e) {
        Small(c2, e.logicalCamId, int32_t{-1}, int32_t{17});
        Small(c2, e.frameworkId, int32_t{-1}, int32_t{15});
        Small(c2, e.physicalCamId, uint32_t{0}, uint32_t{17});
        Small(c2, e.isPrimary, int32_t{0}, int32_t{1});
    });
    Bool(c, cam.hasSensorName);
    if (cam.hasSensorName) {
        c.String(cam.sensorName, 64);
    }
    Small(c, cam.type, uint32_t{0}, uint32_t{4});
    c.Int(cam.fullArrayWidth, uint32_t{0}, UINT32_MAX);
    c.Int(cam.fullArrayHeight, uint32_t{0}, UINT32_MAX);
    Small(c, cam.numSensorModes, uint32_t{0}, uint32_t{33});
    List(c, cam.sensorModeFlags, 4,
         [](Codec& c2, uint16_t& flags) { c2.Int(flags, uint16_t{0}, uint16_t{0xFFFF}); });
}

template <typename Codec>
void VisitStream(Codec& c, StreamInput& s) {
    static const int32_t kStreamTypes[] = {0, 1, 2};
    static const uint32_t kSizes[] = {0,    240,  320,  480,  640,  720,  1080, 1920, 2160,
                                      3840, 4000, 3000, 4928, 6560, 8192, 6144, 9248, 6944};
    static const int32_t kFormats[] = {0x20, 0x21, 0x22, 0x23, 0x24, 0x25, 0x26, 0x36};
    static const uint32_t kUsages[] = {0x100,   0x800, 0x900,      0x10000, 0x80, 0x40,
                                       0x10100, 0x3,   0x40000000, 0x10080, 0x140};
    static const int32_t kDataSpaces[] = {0, 0x1000, 0x1004, 0x8C20000, 0x101};
    static const int64_t kUseCases[] = {0,
                                        0x0080000000010000,
                                        0x0400000000010001,
                                        0x0400000000010000,
                                        0x0800000000010000,
                                        0x0800000000080000};
    static const int64_t kProfiles[] = {1, 2, 4, 8};

    Bool(c, s.null);
    if (s.null) {
        return;
    }
    Pick(c, s.streamType, kStreamTypes);
    Pick(c, s.width, kSizes);
    Pick(c, s.height, kSizes);
    Pick(c, s.format, kFormats);
    Pick(c, s.usage, kUsages);
    Pick(c, s.dataSpace, kDataSpaces);
    c.Int(s.physicalIdKind, uint8_t{0}, uint8_t{2});
    if (s.physicalIdKind == kIdText) {
        c.String(s.physicalId, 24);
    }
    Pick(c, s.useCase, kUseCases);
    Small(c, s.extMode, uint32_t{0}, uint32_t{3});
    c.Int(s.extFlags, uint32_t{0}, UINT32_MAX);
    Pick(c, s.dynamicRangeProfile, kProfiles);
}

template <typename Codec>
void VisitSession(Codec& c, SessionInput& in) {
    static const std::vector<uint32_t> kSessionVendor = {34,  105, 71, 165, 160, 161, 85,
                                                         169, 109, 72, 147, 212, 5};
    static const std::vector<uint32_t> kSessionStandard = {0x10005, 0x10011};
    static const uint32_t kModes[] = {0x0,    0x1,    0x8001, 0x8002, 0x8005, 0x8009, 0x800B,
                                      0x8010, 0x8011, 0x8019, 0x8021, 0x8028, 0x8029, 0x8031,
                                      0x80A8, 0x80B4, 0x80BE, 0x81B4, 0x8030, 0x8036};

    c.String(in.configText, kMaxConfigText);
    List(c, in.properties, 6, [](Codec& c2, PropertyInput& p) {
        c2.Int(p.name, uint8_t{0}, static_cast<uint8_t>(kPropertyCount - 1));
        c2.String(p.value, 40);
    });
    c.Int(in.logSwitches, uint8_t{0}, uint8_t{31});
    Bool(c, in.hasWireless);
    if (in.hasWireless) {
        c.String(in.wireless, 8);
    }
    List(c, in.warmStartFiles, 4, [](Codec& c2, FileInput& f) {
        c2.Int(f.physicalId, uint8_t{0}, uint8_t{15});
        c2.String(f.text, 96);
    });
    List(c, in.cameras, kMaxCameras, [](Codec& c2, CameraInput& cam) { VisitCamera(c2, cam); });
    Small(c, in.cameraId, uint32_t{0}, uint32_t{15});
    Pick(c, in.operationMode, kModes);
    Bool(c, in.nullSessionParams);
    if (!in.nullSessionParams) {
        VisitTagList(c, in.sessionParams, kSessionVendor, kSessionStandard);
    }
    Bool(c, in.nullStreamArray);
    List(c, in.streams, kMaxStreams, [](Codec& c2, StreamInput& s) { VisitStream(c2, s); });
    VisitSteps(c, in.steps);
}

}  // namespace UilayerFuzz

#endif  // UILAYER_FUZZ_SESSION_MODEL_H
