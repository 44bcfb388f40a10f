#pragma once

#include "Base/QxBaseCore10/Strings.h"
#include "Server/Orvane/Payloads/FullAssemblyDataV3.h"

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

using Json = nlohmann::json;

/// Converts wide text to JSON as UTF-8.
template <>
struct nlohmann::adl_serializer<std::wstring> {
    static void to_json(Json& json, const std::wstring& text) { json = Qx::ToHString(text); }
};

/// Returns a record as JSON: what each getter returns, under the name of the field. Enumerators
/// become their names.
Json describe(const Orvane::Payloads::FilesData& file);
Json describe(const Orvane::Payloads::FolderData& folder);
Json describe(const Orvane::Payloads::ProjectData& project);
Json describe(const Orvane::Payloads::RelationshipData& relationship);
Json describe(const Orvane::Payloads::VersionData& version);

/// Returns the answers of a V2 document to every query, each under the query's name. The answer to
/// a query that takes an id is an object with the answers for each of `ids`.
Json answersOf(const Orvane::Payloads::FullAssemblyData& document, const std::vector<std::string>& ids);

/// Returns the same for a V3 document, with the queries of both API versions.
Json answersOf(const Orvane::Payloads::FullAssemblyDataV3& document, const std::vector<std::string>& ids);

/// Returns the properties of the usage event that the document tracks, with its name under "event".
/// Meanwhile, replaces the event sink of the process, so only one thread may call it at a time.
Json eventOf(const Orvane::Payloads::FullAssemblyData& document, const std::wstring& workflow);

/// Returns the name of an enumerator, for code that describes the same records.
std::string nameOf(Orvane::Payloads::ContainerStatus status);
std::string nameOf(Orvane::Payloads::ContainerType type);
std::string nameOf(Qx::CloudBrowser::Relationship::RelationType type);
