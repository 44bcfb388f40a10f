#include "Host/ProcessState.h"

#include "Base/QxBaseCore10/Strings.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <new>
#include <windows.h>

#include <shellapi.h>

namespace OrvaneHost {

// The arguments of `main` are in the system's code page, which lacks most characters.
std::vector<std::string> argumentsInUTF8(int, const char* const*) {
    int count = 0;
    const std::unique_ptr<wchar_t*, decltype(&LocalFree)> arguments(CommandLineToArgvW(GetCommandLineW(), &count),
                                                                    &LocalFree);
    if (!arguments)
        throw std::bad_alloc();
    std::vector<std::string> converted;
    std::transform(arguments.get() + std::min(count, 1), arguments.get() + count, std::back_inserter(converted),
                   Qx::ToHString);
    return converted;
}

void openClosedStandardStreams() {} // A closed stream's place is not taken by another file.

void setSignals() {}

} // namespace OrvaneHost
