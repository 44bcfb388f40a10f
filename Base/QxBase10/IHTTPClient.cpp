#include "Base/QxBase10/IHTTPClient.h"

namespace Qx {

IHTTPClient::~IHTTPClient() = default;

} // namespace Qx
