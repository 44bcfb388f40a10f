#pragma once

#include "Base/QxBase10/HTTPResponse.h"

#include <stdexcept>
#include <string>

namespace OrvaneHost {

using FailureKind = Qx::HTTPResponse::FailureKind;

/// The reason of what a client that ends leaves unanswered.
inline constexpr const char* closedFirst = "the HTTP client was closed before the answer came";

/// What is wrong with a request or its answer, in one line.
class TransferError : public std::runtime_error {
public:
    TransferError(FailureKind kind, const std::string& reason) : std::runtime_error(reason), kind_(kind) {}

    FailureKind kind() const { return kind_; }

private:
    FailureKind kind_;
};

} // namespace OrvaneHost
