// Host-only trace of how a session's and a request's caps come about: the
// configuration steps in their order with the caps after each, and every
// contribution of a request (a buffer, a sensor mode list value, the warm
// start rule, a setting, ...) with the caps before and after it. Host tools
// install one observer per process and derive from it who set and who
// cleared a bit.
//
// Everything here exists only when the library is compiled with
// UILAYER_TRACE=1 (the host target uilayer_core_traced). Otherwise the
// macros at the end expand to the plain calls or to nothing: the device
// library carries no trace code, symbol or branch. Every name of the trace
// lives in Lumora::Trace, so a symbol listing shows at once whether a build
// carries it.
//
// The observer is called synchronously on the caller's thread, in the middle
// of the library's work; it must not call back into the parser it observes.
// The records it receives point into the library's objects and are valid only
// during the call.
#ifndef LUMORA_TRACE_H
#define LUMORA_TRACE_H

#if defined(UILAYER_TRACE) && UILAYER_TRACE

#include <LumoraCameraInfo.h>
#include <hardware/camera3.h>

#include <cstddef>
#include <cstdint>

#include "IuiLayer.h"
#include "common/ConfigurationSteps.h"

namespace Lumora {
namespace Trace {

// The per-camera caps arrays of the session and of a request hold eight sets.
constexpr uint32_t kCameraCapsSlots = 8;

// What the session knows about its client and mode after a step: the inputs
// the rules read that no query of IuiLayer returns.
struct _SessionFacts {
    uint32_t operationMode;  // masked with 0xF0FF, as the rules compare it
    int32_t minFps;
    int32_t maxFps;
    const char* cameraMode;  // "" when the client sent none
    const char* packageName;
    const char* activityName;
    int32_t logicalCamId;         // -1 when the camera has no record
    const char* tableCameraName;  // the set's name used for table lookups ("" when none)
    uint32_t numPhysicalCameras;
    uint32_t isSystemCamera;
    uint32_t isCameraUnit;
    uint32_t isEngineerCamera;
    uint32_t isCtsCamera;
    uint32_t isCtsVerifier;
    uint32_t isScanMode;
    uint32_t isGSIBuild;
    uint32_t supportOisCenterOn;
    uint32_t supportOisCloseOcs;
    uint32_t hasExtModeStream;
    uint32_t isBokehMode;
    uint32_t isAICompositionEnable;
    uint32_t videoStabilizationMode;
    uint32_t cameraIsFromMainMenu;
};

// The session after one configuration step.
struct _Step {
    const char* name;  // the library's function name, kConfigStepNames[index]
    uint32_t index;    // an EConfigStep
    const _CapsBitset* logical;
    // kCameraCapsSlots sets; slot k answers physical queries for the camera
    // entry at position k (cameras[k].physicalCamId).
    const _CapsBitset* cameraCaps;
    const LumoraCameraEntry* cameras;
    uint32_t cameraCount;
    _SessionFacts facts;
};

// What contributed to a request's caps.
enum Source : uint32_t {
    kSourceZoomRatio = 0,       // QBC 4x threshold: value -1, zoomRatio set
    kSourceSensorModeList = 1,  // value: the list's value for `camera`
    kSourceWarmStart = 2,       // value: dolState, detail: warmStartEnable
    kSourceShdrSupport = 3,     // bit 18 withdrawn: the session lacks bit 15 for `camera`
    kSourceAecFeedback = 4,     // value: exposure count of the last result
    kSourceStreamBuffer = 5,    // value: StreamType, detail: stream index in the configuration
    kSourceSetting = 6,         // tag: vendor tag index, value: its value, detail: scene value
    kSourceOperationMode = 7,   // value: the session's operation mode
};

// One contribution with the request's caps before and after it.
struct _Contribution {
    Source source;
    uint32_t frameNumber;
    int32_t camera;  // physical camera id the contribution is about; -1: the logical camera
    int32_t value;
    int32_t detail;
    uint32_t tag;
    float zoomRatio;
    const camera3_stream* stream;  // kSourceStreamBuffer: the buffer's stream
    _CapsBitset primaryBefore;
    _CapsBitset primaryAfter;
    _CapsBitset cameraBefore[kCameraCapsSlots];
    _CapsBitset cameraAfter[kCameraCapsSlots];
};

class Observer {
public:
    virtual ~Observer() = default;

    // A configuration starts (ParseStaticCapabilities with a configuration),
    // before anything is reset; the operation mode is still the framework's.
    virtual void OnConfigurationBegin(const camera3_stream_configuration* /*config*/) {}
    // A step is about to run / has run. Log lines written in between are
    // that step's.
    virtual void OnStepBegin(const char* /*name*/, uint32_t /*index*/) {}
    virtual void OnStepEnd(const _Step& /*step*/) {}

    // A request update starts / ends (with the record's final caps and status).
    virtual void OnRequestBegin(const camera3_capture_request* /*request*/) {}
    virtual void OnContribution(const _Contribution& /*contribution*/) {}
    virtual void OnRequestEnd(uint32_t /*frameNumber*/, const _CapsBitset& /*primary*/,
                              const _CapsBitset* /*cameraCaps*/, int32_t /*status*/) {}
};

// The observer of this process (none at start).
inline Observer*& CurrentObserver() {
    static Observer* observer = nullptr;
    return observer;
}

// Installs `observer` (null: none) and returns the one it replaces.
inline Observer* SetObserver(Observer* observer) {
    Observer* previous = CurrentObserver();
    CurrentObserver() = observer;
    return previous;
}

// Records one request contribution: the caps are taken at construction and
// again when the scope ends, and the observer gets both.
class ContributionScope {
public:
    ContributionScope(Source source, uint32_t frameNumber, int32_t camera, int32_t value,
                      int32_t detail, const _CapsBitset& primary, const _CapsBitset* cameraCaps)
        : m_primary(primary), m_cameraCaps(cameraCaps) {
        m_record = {};
        m_record.source = source;
        m_record.frameNumber = frameNumber;
        m_record.camera = camera;
        m_record.value = value;
        m_record.detail = detail;
        m_record.primaryBefore = primary;
        for (uint32_t i = 0; i < kCameraCapsSlots; ++i) {
            m_record.cameraBefore[i] = cameraCaps[i];
        }
    }
    ~ContributionScope() {
        Observer* observer = CurrentObserver();
        if (observer == nullptr) {
            return;
        }
        m_record.primaryAfter = m_primary;
        for (uint32_t i = 0; i < kCameraCapsSlots; ++i) {
            m_record.cameraAfter[i] = m_cameraCaps[i];
        }
        observer->OnContribution(m_record);
    }
    ContributionScope(const ContributionScope&) = delete;
    ContributionScope& operator=(const ContributionScope&) = delete;

    ContributionScope& Tag(uint32_t tag) {
        m_record.tag = tag;
        return *this;
    }
    ContributionScope& ZoomRatio(float ratio) {
        m_record.zoomRatio = ratio;
        return *this;
    }
    ContributionScope& Stream(const camera3_stream* stream) {
        m_record.stream = stream;
        return *this;
    }

private:
    const _CapsBitset& m_primary;
    const _CapsBitset* m_cameraCaps;
    _Contribution m_record;
};

inline void ConfigurationBegin(const camera3_stream_configuration* config) {
    if (Observer* observer = CurrentObserver()) {
        observer->OnConfigurationBegin(config);
    }
}

inline void StepBegin(uint32_t index) {
    if (Observer* observer = CurrentObserver()) {
        observer->OnStepBegin(kConfigStepNames[index], index);
    }
}

inline void RequestBegin(const camera3_capture_request* request) {
    if (Observer* observer = CurrentObserver()) {
        observer->OnRequestBegin(request);
    }
}

inline void RequestEnd(uint32_t frameNumber, const _CapsBitset& primary,
                       const _CapsBitset* cameraCaps, int32_t status) {
    if (Observer* observer = CurrentObserver()) {
        observer->OnRequestEnd(frameNumber, primary, cameraCaps, status);
    }
}

}  // namespace Trace
}  // namespace Lumora

// Tell the observer that configuration step `index` (an EConfigStep) is
// about to run / has run; the end is reported by the session, which knows
// the caps and facts after the step.
#define UILAYER_TRACE_STEP_BEGIN(index) ::Lumora::Trace::StepBegin(index)
#define UILAYER_TRACE_STEP_END(index) TraceStepEnd(index)
#define UILAYER_TRACE_CONFIGURATION_BEGIN(config) ::Lumora::Trace::ConfigurationBegin(config)
#define UILAYER_TRACE_REQUEST_BEGIN(request) ::Lumora::Trace::RequestBegin(request)
#define UILAYER_TRACE_REQUEST_END(frame, primary, cameraCaps, status) \
    ::Lumora::Trace::RequestEnd(frame, primary, cameraCaps, status)
// Opens a contribution that lasts to the end of the enclosing block; `extra`
// sets the optional fields (for example .Tag(159)).
#define UILAYER_TRACE_CONTRIBUTION(source, camera, value, detail, extra)                          \
    ::Lumora::Trace::ContributionScope uilayerTraceScope_(::Lumora::Trace::source, m_frameNumber, \
                                                          camera, value, detail, m_primaryCaps,   \
                                                          m_cameraCaps);                          \
    (void)(uilayerTraceScope_ extra)

#else  // UILAYER_TRACE

#define UILAYER_TRACE_STEP_BEGIN(index)
#define UILAYER_TRACE_STEP_END(index)
#define UILAYER_TRACE_CONFIGURATION_BEGIN(config)
#define UILAYER_TRACE_REQUEST_BEGIN(request)
#define UILAYER_TRACE_REQUEST_END(frame, primary, cameraCaps, status)
#define UILAYER_TRACE_CONTRIBUTION(source, camera, value, detail, extra)

#endif  // UILAYER_TRACE

#endif  // LUMORA_TRACE_H
