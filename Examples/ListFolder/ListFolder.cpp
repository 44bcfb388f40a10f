// Lists the contents of a folder.
//
//     ORVANE_TOKEN=... ListFolder SERVICE-URL FOLDER-URN

#include "Base/QxBaseCore10/ApplicationOptions.h"
#include "Base/QxBaseCore10/JSONNode.h"
#include "Base/QxBaseCore10/Strings.h"
#include "HTTPClient/CurlHTTPClient.h"
#include "Server/Orvane/FolderContentLink.h"
#include "Server/Orvane/Orvanedm.h"

#include <cstdlib>
#include <iostream>

namespace {

// Prints the names of the folders and files in the answer, whose structure the service defines.
void show(const Qx::JSONNode& contents) {
    const Qx::JSONNode included(contents["included"]);
    for (const char* kind : {"folders", "files"})
        for (const Qx::JSONRef element : Qx::JSONNode(included[kind]))
            std::cout << kind << ": " << Qx::JSONNode(element)["name"].asHString("(no name)") << '\n';
}

} // namespace

int main(int argc, char** argv) {
    const char* token = std::getenv("ORVANE_TOKEN");
    if (argc != 3 || !token) {
        std::cerr << "usage: ORVANE_TOKEN=... ListFolder SERVICE-URL FOLDER-URN\n";
        return 2;
    }
    Qx::ApplicationOptions::get("main")->set(L"orvaneServiceUrl", Qx::ToIString(argv[1]));
    Qx::CurlHTTPClientOptions options;
    options.token = token;
    options.tokenOrigins = {argv[1]};
    options.onAttempt = [](const Qx::HTTPAttempt& attempt) {
        if (attempt.status != 200)
            std::cerr << attempt.url << ": " << (attempt.status != 0 ? std::to_string(attempt.status) : attempt.reason)
                      << '\n';
    };
    Qx::Orvanedm orvanedm(std::make_shared<Qx::CurlHTTPClient>(options), "main");

    // The client is not asynchronous, so the callback runs before the call returns.
    bool hasSucceeded = false;
    orvanedm.getFolderContents(Orvane::FolderContentLink::fromUrn(argv[2], "main"), {},
                               [&](bool success, const Qx::JSONNode& contents) {
                                   hasSucceeded = success;
                                   show(contents);
                               });
    return hasSucceeded ? 0 : 1;
}
