// A whole camera session from one input: the configuration text, the camera
// table with the sibling's records, the session parameters and streams, then
// requests, results and queries with arbitrary arguments.
#include <cstddef>
#include <cstdint>

#include "IuiLayer.h"
#include "SessionModel.h"
#include "SessionRunner.h"

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    UilayerFuzz::Root();
    // Decoding needs the vendor tag lookup (element sizes of vendor tags).
    Lumora::IuiLayer::Init(0, nullptr);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
    UilayerFuzz::Decoder decoder(data, size);
    UilayerFuzz::SessionInput input;
    UilayerFuzz::VisitSession(decoder, input);
    UilayerFuzz::RunSession(input);
    return 0;
}
