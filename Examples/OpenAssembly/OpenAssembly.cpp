// Opens a design as an application does: the request runs in the background, its result arrives on
// the main thread, progress and each attempt are shown, the token is renewed, and Ctrl-C cancels.
//
//     ORVANE_TOKEN=... OpenAssembly SERVICE-URL VERSION-URN

#include "Base/QxBaseCore10/ApplicationOptions.h"
#include "Base/QxBaseCore10/Strings.h"
#include "HTTPClient/CurlHTTPClient.h"
#include "Server/Orvane/Orvanedm.h"
#include "Server/Orvane/Payloads/FullAssemblyDataV3.h"

#include <condition_variable>
#include <csignal>
#include <cstdlib>
#include <deque>
#include <iostream>
#include <mutex>

namespace {

// Represents the event loop of the user interface.
class MainThreadQueue {
public:
    void post(std::function<void()> task) {
        const std::lock_guard lock(mutex_);
        tasks_.push_back(std::move(task));
        changed_.notify_one();
    }

    // Runs the next task, if one arrives soon.
    void runNext() {
        std::unique_lock lock(mutex_);
        if (!changed_.wait_for(lock, std::chrono::milliseconds(20), [this] { return !tasks_.empty(); }))
            return;
        const std::function<void()> task = std::move(tasks_.front());
        tasks_.pop_front();
        lock.unlock();
        task();
    }

private:
    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<std::function<void()>> tasks_;
};

// Represents the application's sign-in, whose first token has expired.
std::string currentToken(const std::string& refusedToken) {
    const char* token = std::getenv("ORVANE_TOKEN");
    return refusedToken.empty() || !token ? "expired" : token;
}

Qx::CurlHTTPClientOptions optionsFor(const std::string& service) {
    Qx::CurlHTTPClientOptions options;
    options.tokenSource = currentToken;
    options.tokenOrigins = {service};
    options.onProgress = [](const Qx::HTTPProgress& now) { std::clog << now.received << " bytes\n"; };
    options.onAttempt = [](const Qx::HTTPAttempt& tried) {
        std::clog << tried.url << ": " << (tried.status != 0 ? std::to_string(tried.status) : tried.reason) << '\n';
    };
    return options;
}

// Tells the user why there is no design.
std::string explain(const Qx::HTTPResponse& response) {
    switch (response.getStatus()) {
    case 0:
        return response.getReason();
    case 401:
        return "sign in again";
    case 403:
        return "you are not allowed to see it";
    case 200:
    case 404:
        return "there is no such design";
    default:
        return "the service answered with status " + std::to_string(response.getStatus());
    }
}

void warn(const char* problem, const std::vector<std::wstring>& parents) {
    for (const std::wstring& parent : parents)
        std::cout << "warning: " << Qx::ToHString(parent) << " is " << problem << '\n';
}

void show(const Orvane::Payloads::FullAssemblyData& assembly) {
    std::cout << assembly.getId() << " refers to " << assembly.getDirectReferencedFiles().size() << " files\n";
    warn("archived", assembly.getArchivedParents());
    warn("inactive", assembly.getInactiveParents());
    warn("deleted", assembly.getDeletedParents());
    warn("not yours to change", assembly.getAccessDeniedParents());
}

volatile std::sig_atomic_t isInterrupted = 0;

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        std::cerr << "usage: ORVANE_TOKEN=... OpenAssembly SERVICE-URL VERSION-URN\n";
        return 2;
    }
    std::signal(SIGINT, [](int) { isInterrupted = 1; });
    Qx::ApplicationOptions::get("main")->set(L"orvaneV3ServiceUrl", Qx::ToIString(argv[1]) + L"/v3");
    MainThreadQueue mainThread;
    Qx::HTTPResponse response; // The response whose callback is running.
    Qx::CurlHTTPClientOptions options = optionsFor(argv[1]);
    options.onResponse = [&](const Qx::HTTPRequest&, const Qx::HTTPResponse& given) { response = given; };
    const auto client = std::make_shared<Qx::CurlHTTPClient>(options);
    Qx::Orvanedm orvanedm(client, "main");
    orvanedm.setAsync(true);
    std::optional<bool> isOpen;
    // The answer is read on a thread of the client; the result is passed to the main thread.
    const auto open = [&](bool success, const std::shared_ptr<Orvane::Payloads::FullAssemblyData>& assembly) {
        const bool isDesign = success && assembly->getId() == argv[2]; // Any JSON is a `success`.
        mainThread.post([&, isDesign, assembly, problem = explain(response)] {
            isOpen = isDesign;
            if (isDesign)
                show(*assembly);
            else
                std::cout << "can't open it: " << problem << '\n';
        });
    };
    orvanedm.getFullAssemblyStatus(argv[2], open, "ACTUAL", L"open design");
    while (!isOpen) {
        mainThread.runNext();
        if (isInterrupted)
            client->cancelAll();
    }
    return *isOpen ? 0 : 1;
}
