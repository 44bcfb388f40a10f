#include "Base/QxBase10/HTTPUtils.h"

#include "Base/QxBase10/HTTPResponse.h"
#include "Base/QxBaseCore10/JSONNode.h"

#include <optional>
#include <utility>

namespace Qx {

bool HTTPUtils::extractJSON(Status& status, const HTTPResponse& response, JSONNode& node) {
    std::optional<JSONNode> root = JSONNode::parse(response.getBody(), status, HTTPResponse::padding);
    if (!root)
        return false;
    node = *std::move(root);
    return true;
}

} // namespace Qx
