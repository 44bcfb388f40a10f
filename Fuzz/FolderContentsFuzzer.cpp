// Feeds arbitrary bytes to the library as a folder's contents. The callback must be called once,
// with JSON that stays the same when it is written as text and parsed again.

#include "Base/QxBaseCore10/JSONNode.h"
#include "Base/QxBaseCore10/Strings.h"
#include "Fuzz/Require.h"
#include "Server/Orvane/FolderContentLink.h"
#include "Server/Orvane/Orvanedm.h"
#include "Testing/PreparedHTTPClient.h"

#include <cstddef>
#include <cstdint>

namespace {

using OrvaneFuzz::require;

// Reads the value through every getter.
void readAll(const Qx::JSONRef& value) {
    std::string narrow = "default";
    std::wstring wide = L"default";
    bool flag = false;
    std::int32_t number = 0;
    const bool hasText = value.get(narrow);
    require(value.get(wide) == hasText, "a value is text in both widths or in neither");
    require(Qx::ToHString(wide) == narrow, "both widths contain the same text");
    require(value.asHString("default") == narrow, "asHString returns what get stores");
    require(!(value.get(flag) && value.get(number)), "a value is not both a boolean and an integer");
    require(!(value.isNull() && hasText), "null is not text");
}

void walk(const Qx::JSONNode& node) {
    for (const char* key : {"", "data", "id", "included", "results"}) {
        readAll(node[key]);
        require(node.exists(key) || node[key].isNull(), "a missing key is null");
        readAll(node[key]);
    }
    for (const Qx::JSONRef& element : node) {
        readAll(element);
        const Qx::JSONNode child(element);
        readAll(child["id"]);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    const std::string body(reinterpret_cast<const char*>(bytes), size);
    Qx::Orvanedm orvanedm(std::make_shared<Orvane::Testing::PreparedHTTPClient>(Qx::HTTPResponse(200, body)), "");
    int callbacks = 0;
    orvanedm.getFolderContents(Orvane::FolderContentLink::fromContentLink(body), {{body, body}},
                               [&](bool success, const Qx::JSONNode& contents) {
                                   ++callbacks;
                                   const std::string text = contents.toText();
                                   require(success || text == "{}", "on failure, the contents are an empty object");
                                   const Qx::JSONNode again(text);
                                   require(again.toText() == text, "JSON round-trips through its text");
                                   require(Qx::JSONNode(body).toText() == (success ? text : "null"),
                                           "the node and the client agree on what is JSON");
                                   walk(contents);
                                   walk(again);
                               });
    require(callbacks == 1, "the callback is called once");
    return 0;
}
