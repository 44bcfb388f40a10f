// Runs the cases of Tests/Cases. Each case says in a sentence what it "shows", contains the input
// (a value under "json", its text under "text" or "bytes", or a URL with what is added to it), and
// lists those expected "answers" that matter, by the class that returns them. Of a record or an
// event, only the fields in the case are compared; any other answer is compared as a whole.

#include "Tests/Support/Cases.h"
#include "Base/QxBaseCore10/JSONNode.h"
#include "Base/QxBaseCore10/Status.h"
#include "Base/QxBaseCore10/Strings.h"
#include "Base/QxBaseCore10/Uri.h"
#include "Server/Orvane/FolderContentLink.h"
#include "Testing/ScopedState.h"
#include "Tests/Support/Answers.h"

#include <gtest/gtest.h>
#include <set>

namespace {

using namespace Orvane::Payloads;
using Orvane::FolderContentLink;
using namespace Orvane::Testing;

static_assert(!std::is_default_constructible_v<FolderContentLink>);
static_assert(!std::is_constructible_v<FolderContentLink, std::string>);

const std::set<std::string> queriesById{"getProjectName", "projectMembership", "getFileById", "getFolder",
                                        "getProject"};

std::vector<std::string> idsIn(const Json& expected) {
    std::set<std::string> ids;
    for (const std::string& query : queriesById)
        if (expected.contains(query))
            for (const auto& [id, answer] : expected[query].items())
                ids.insert(id);
    return {ids.begin(), ids.end()};
}

std::string textOf(const Json& tested) {
    if (tested.contains("json"))
        return tested["json"].dump();
    return tested.contains("bytes") ? bytesOf(tested["bytes"]) : tested.at("text").get<std::string>();
}

Qx::JSONNode nodeOf(const Json& tested) {
    return Qx::JSONNode(textOf(tested));
}

template <class Document>
Json askDocument(const Json& tested, const Json& expected) {
    const Document document(nodeOf(tested));
    Json answers = answersOf(document, idsIn(expected));
    answers["event"] = eventOf(document, L"open \u6B6F");
    return answers;
}

template <class Record>
Json askRecord(const Json& tested, const Json&) {
    return describe(Record(nodeOf(tested)));
}

// Returns what `get` writes, or null if it leaves both destinations unchanged.
template <class Value>
Json got(const Qx::JSONRef& ref, Value first, Value second) {
    const bool isWritten = ref.get(first);
    EXPECT_EQ(ref.get(second), isWritten);
    EXPECT_EQ(first == second, isWritten);
    if constexpr (std::is_same_v<Value, std::wstring>)
        return isWritten ? Json(Qx::ToHString(first)) : Json();
    else
        return isWritten ? Json(first) : Json();
}

Json askValue(const Json& tested, const Json&) {
    const Qx::JSONNode node = nodeOf(tested);
    const Qx::JSONRef value = node["value"];
    return {{"isNull", value.isNull()},
            {"narrow", got<std::string>(value, "one", "other")},
            {"wide", got<std::wstring>(value, L"one", L"other")},
            {"bool", got<bool>(value, false, true)},
            {"integer", got<std::int32_t>(value, 41, 42)},
            {"asHString", value.asHString("default")}};
}

Json askNode(const Json& tested, const Json&) {
    Qx::Status status;
    const std::optional<Qx::JSONNode> parsed = Qx::JSONNode::parse(textOf(tested), status);
    EXPECT_EQ(parsed.has_value(), status.isOk());
    const Qx::JSONNode node = parsed.value_or(Qx::JSONNode("[]"));
    Json elements = Json::array();
    for (const Qx::JSONRef& element : node)
        elements.push_back(Qx::JSONNode(element).toText());
    return {{"isJSON", parsed.has_value()},
            {"toText", nodeOf(tested).toText()},
            {"isArray", node.isArray()},
            {"elements", elements},
            {"hasId", node.exists("id")}};
}

Json askUri(const Json& tested, const Json&) {
    const std::string url = tested.at("url");
    Qx::Uri uri(url);
    for (const auto& [key, value] : tested.value("adding", std::vector<std::pair<std::string, std::string>>()))
        uri.SetQueryVariable(key, value);
    return {{"text", uri.ToString(false)}, {"rendered", uri.ToString(true)}, {"encoded", Qx::Uri::UriEncode(url)}};
}

Json askLink(const Json& tested, const Json&) {
    const ScopedState service = scopedOption("cases", L"orvaneServiceUrl", Qx::ToIString(tested.value("service", "")));
    const ScopedState v3Service = scopedOption("cases", L"orvaneV3ServiceUrl", L"https://v3");
    const ScopedState current = scopedCurrentOptions(tested.contains("current") ? "cases" : "none");
    const auto form = [&] {
        if (tested.contains("link"))
            return FolderContentLink::fromContentLink(tested["link"]);
        return tested.contains("current") ? FolderContentLink::fromUrn(tested["urn"])
                                          : FolderContentLink::fromUrn(tested["urn"], "cases");
    };
    const FolderContentLink before = form();
    const ScopedState flag = scopedFlag("data-show-non-cad-components");
    const std::string href = before.href().ToString(false);
    before.href().SetQueryVariable("a", "b");
    EXPECT_EQ(before.href().ToString(false), href) << "changing the URL does not change the link";
    return {{"href", href},
            {"withOtherComponents", form().href().ToString(false)},
            {"isRecognised", FolderContentLink::isOrvaneFolderContentLink(href)}};
}

using Ask = Json (*)(const Json& tested, const Json& expected);
const std::map<std::string, Ask> classes{{"FilesData", askRecord<FilesData>},
                                         {"FolderData", askRecord<FolderData>},
                                         {"ProjectData", askRecord<ProjectData>},
                                         {"RelationshipData", askRecord<RelationshipData>},
                                         {"VersionData", askRecord<VersionData>},
                                         {"FullAssemblyData", askDocument<FullAssemblyData>},
                                         {"FullAssemblyDataV3", askDocument<FullAssemblyDataV3>},
                                         {"FolderContentLink", askLink},
                                         {"JSONNode", askNode},
                                         {"JSONRef", askValue},
                                         {"Uri", askUri}};

void expectSame(const Json& expected, const Json& found, const std::string& answer, bool isPart = false) {
    const bool isRecord = found.is_object() && (found.contains("type") || found.contains("event"));
    const bool lacksPart = !isPart && !isRecord && expected.size() != found.size();
    if (!expected.is_structured() || expected.type() != found.type() || lacksPart) {
        EXPECT_EQ(expected, found) << answer;
        return;
    }
    for (const auto& [key, value] : expected.items())
        expectSame(value, found.is_array() ? found[std::stoul(key)] : found.value(key, Json()), answer + ' ' + key);
}

class Cases : public testing::TestWithParam<const char*> {};
INSTANTIATE_TEST_SUITE_P(Of, Cases,
                         testing::Values("assembly", "parents", "events", "files", "folders", "links", "projects",
                                         "values", "versions"),
                         [](const auto& tested) { return std::string(tested.param); });

TEST_P(Cases, ProduceTheExpectedAnswers) {
    const Json cases = casesOf(GetParam() + std::string(".json"));
    EXPECT_FALSE(cases.empty());
    for (const Json& tested : cases) {
        SCOPED_TRACE(tested.at("shows"));
        for (const auto& [name, expected] : tested.at("answers").items()) {
            const Json found = classes.at(name)(tested, expected);
            for (const auto& [answer, value] : expected.items()) {
                ASSERT_TRUE(found.contains(answer)) << name << " has no answer " << answer;
                expectSame(value, found[answer], name + ' ' + answer, queriesById.contains(answer));
            }
        }
    }
}

} // namespace
