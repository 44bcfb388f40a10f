#pragma once

#include "Base/QxBaseCore10/JSONNode.h"

#include <string>

/// The text as a node; a test's input stands in the test.
inline Qx::JSONNode json(const std::string& text) {
    return Qx::JSONNode(text);
}
