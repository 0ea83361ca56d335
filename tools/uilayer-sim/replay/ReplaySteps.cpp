// Runs the steps of a replayed session (requests, results, repeats and the
// queries) and records the library's answers to each.
#include <hardware/camera3.h>

#include <algorithm>

#include "core/AbortHandler.h"
#include "replay/Replayer.h"

namespace UilayerSim {

namespace {

// Physical ids a request keeps caps for.
constexpr uint32_t kRequestCameraCount = 8;
// Requests of a repeat between two looks at the progress line.
constexpr uint32_t kProgressEvery = 4096;

}  // namespace

_StepRecord Replayer::RunStep(PreparedStep* prepared, PreparedSession* session,
                              Lumora::IuiLayer* parser) {
    const Step& step = *prepared->step;
    SetCurrentStep("the step on line " + std::to_string(step.line) + " of " + m_scenario.name);
    _StepRecord record;
    record.step = step;
    if (step.kind == StepKind::Request) {
        const uint32_t frame = step.request.frame;
        record.returnCode = parser->UpdatePerRequestCaps(prepared->request->Get());
        record.log = TakeLog();
        SetLogging(false);
        const auto caps = [&](uint32_t queryType) {
            return parser->GetRequestSupportCaps(frame,
                                                 static_cast<Lumora::QueryCapsType>(queryType));
        };
        record.caps = caps(kLogicalCamera);
        for (uint32_t id : PhysicalCameraIds(m_scenario, *session->setup)) {
            if (id < kRequestCameraCount) {
                record.cameraCaps.emplace_back(id, caps(id));
            }
        }
        record.roles = Roles(&frame, *session, parser);
        SetLogging(m_options.log && m_options.logSteps);
    } else if (step.kind == StepKind::Result) {
        record.returnCode = parser->UpdateResultAppliedCaps(prepared->result->Get());
        record.log = TakeLog();
    } else if (step.kind == StepKind::Repeat) {
        RunRepeat(prepared, parser, &record);
    } else {
        RunQuery(session, parser, &record);
        record.log = TakeLog();
    }
    return record;
}

void Replayer::RunRepeat(PreparedStep* prepared, Lumora::IuiLayer* parser, _StepRecord* record) {
    const Step& step = *prepared->step;
    camera3_capture_request_t& request = *prepared->request->Get();
    camera3_capture_result_t* result = prepared->result ? prepared->result->Get() : nullptr;
    size_t laterLogLines = 0;
    const auto logical = static_cast<Lumora::QueryCapsType>(kLogicalCamera);
    for (uint32_t i = 0; i < step.count; ++i) {
        const uint32_t frame = step.request.frame + i;
        request.frame_number = frame;
        if (i % kProgressEvery == 0) {
            m_progress.Note(m_sessionIndex, m_scenario.sessions.size(), frame);
        }
        ++record->returnCodes[parser->UpdatePerRequestCaps(&request)];
        const Lumora::_CapsBitset caps = parser->GetRequestSupportCaps(frame, logical);
        auto& variants = record->variants;
        const auto known = std::find_if(variants.begin(), variants.end(),
                                        [&](const auto& variant) { return variant.first == caps; });
        if (known != variants.end()) {
            ++known->second;
        } else {
            variants.emplace_back(caps, 1);
        }
        if (result != nullptr) {
            result->frame_number = frame;
            parser->UpdateResultAppliedCaps(result);
        }
        if (m_options.log && m_options.logSteps) {
            std::vector<std::string> lines = TakeLog();
            if (i == 0) {
                record->log = std::move(lines);
            } else {
                laterLogLines += lines.size();
            }
        }
    }
    if (laterLogLines > 0) {
        record->log.push_back("(" + std::to_string(laterLogLines) +
                              " log lines of the later requests not shown)");
    }
}

void Replayer::RunQuery(PreparedSession* session, Lumora::IuiLayer* parser, _StepRecord* record) {
    const Step& step = record->step;
    const auto queryType = static_cast<Lumora::QueryCapsType>(step.camera);
    switch (step.kind) {
        case StepKind::SessionCaps:
            for (uint32_t bit : step.caps) {
                record->answers.push_back(parser->IsSessionSupportCaps(
                    static_cast<Lumora::DesiredSupportCaps>(bit), queryType));
            }
            break;
        case StepKind::CapsMask:
            record->returnCode = parser->GetStaticCapsMask(queryType, record->caps);
            break;
        case StepKind::Streams: {
            const auto role = static_cast<Lumora::StreamType>(step.role);
            const auto* list = step.hasFrame ? parser->GetStreamByStreamType(step.frame, role)
                                             : parser->GetStreamByStreamType(role);
            record->held = !step.hasFrame || list != nullptr;
            record->streams = StreamNames(list, *session);
            break;
        }
        case StepKind::SensorMode:
            if (step.capsSource == CapsSource::List) {
                for (uint32_t bit : step.caps) {
                    record->caps.set(bit);
                }
            } else if (step.capsSource == CapsSource::Request) {
                record->caps = parser->GetRequestSupportCaps(step.frame, queryType);
            } else {
                parser->GetStaticCapsMask(queryType, record->caps);
            }
            record->held = step.capsSource != CapsSource::Request || HasRecord(step.frame, parser);
            record->returnCode =
                parser->GetSensorModeIndexByCaps(record->caps, queryType, record->sensorModeIndex);
            break;
        case StepKind::TuningMode:
            record->tuningMode = parser->GetOriginalRequestTuningMode(
                step.frame, static_cast<Lumora::QueryTuningType>(step.tuningType));
            record->held = HasRecord(step.frame, parser);
            break;
        case StepKind::Pipeline:
            if (const char* name = parser->GetPipelineName()) {
                record->pipeline = name;
            }
            break;
        case StepKind::Sat:
            if (const Lumora::_SatStaticCaps* sat = parser->GetSatStaticCaps()) {
                record->sat = *sat;
            }
            break;
        case StepKind::WarmStart:
            record->warmStart = WarmStart(step.camera, parser);
            break;
        case StepKind::StarModeAe:
            if (const Lumora::StarModeAEInfo* info = parser->GetStarModeAEInfo()) {
                record->starMode = *info;
            }
            break;
        case StepKind::RemapZoomRatio: {
            std::vector<char> name(step.sensor.begin(), step.sensor.end());
            name.push_back('\0');
            record->zoomRatio = parser->ProcessRemapZoomRatio(name.data(), step.skip);
            break;
        }
        case StepKind::RequestCaps:
            record->caps = parser->GetRequestSupportCaps(step.frame, queryType);
            record->held = HasRecord(step.frame, parser);
            for (uint32_t bit : step.caps) {
                record->answers.push_back(parser->IsRequestSupportCaps(
                    step.frame, static_cast<Lumora::DesiredSupportCaps>(bit), queryType));
            }
            break;
        default:
            break;
    }
}

}  // namespace UilayerSim
