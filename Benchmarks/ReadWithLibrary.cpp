#include "Base/QxBase10/HTTPUtils.h"
#include "Base/QxBaseCore10/JSONNode.h"
#include "Base/QxBaseCore10/Status.h"
#include "Benchmarks/Readers.h"

#include <stdexcept>

namespace OrvaneBenchmarks {

Orvane::Payloads::FullAssemblyDataV3 readWithLibrary(const Qx::HTTPResponse& response) {
    Qx::Status status;
    Qx::JSONNode root;
    if (!Qx::HTTPUtils::extractJSON(status, response, root))
        throw std::runtime_error(status.reason());
    return Orvane::Payloads::FullAssemblyDataV3(root);
}

} // namespace OrvaneBenchmarks
