#include "Base/QxBase10/HTTPUtils.h"

#include "Base/QxBase10/HTTPResponse.h"
#include "Base/QxBaseCore10/JSONNode.h"

namespace Qx {

bool HTTPUtils::extractJSON(Status& status, const HTTPResponse& response, JSONNode& node) {
    return JSONNode::parse(response.getBody(), HTTPResponse::spareBytes, node, status);
}

} // namespace Qx
