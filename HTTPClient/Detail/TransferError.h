#pragma once

#include "Base/QxBase10/HTTPResponse.h"

#include <stdexcept>
#include <string>

namespace Qx::Detail {

using FailureKind = HTTPResponse::FailureKind;

/// What is wrong with a request or its response, in one line.
class TransferError : public std::runtime_error {
public:
    TransferError(FailureKind kind, const std::string& reason) : std::runtime_error(reason), kind_(kind) {}

    FailureKind kind() const { return kind_; }

private:
    FailureKind kind_;
};

} // namespace Qx::Detail
