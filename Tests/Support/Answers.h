#pragma once

#include "Base/QxBaseCore10/Strings.h"
#include "Server/Orvane/Payloads/FullAssemblyDataV3.h"

#include <nlohmann/json.hpp>
#include <string>
#include <vector>

using Json = nlohmann::json;

/// Wide text is text in UTF-8.
template <>
struct nlohmann::adl_serializer<std::wstring> {
    static void to_json(Json& json, const std::wstring& text) { json = Qx::ToHString(text); }
};

/// A record as JSON: each of its answers under the name of the field. Enumerators are their names.
Json describe(const Orvane::Payloads::FilesData& file);
Json describe(const Orvane::Payloads::FolderData& folder);
Json describe(const Orvane::Payloads::ProjectData& project);
Json describe(const Orvane::Payloads::RelationshipData& relationship);
Json describe(const Orvane::Payloads::VersionData& version);

/// What a document of the first generation answers to every query, each under the query's name. Queries that take an
/// id are asked for each of `ids`, and answer with an object.
Json answersOf(const Orvane::Payloads::FullAssemblyData& document, const std::vector<std::string>& ids);

/// The same for the queries of both generations.
Json answersOf(const Orvane::Payloads::FullAssemblyDataV3& document, const std::vector<std::string>& ids);

/// The properties of the usage event that the document tracks, with its name under "event". It takes the place of
/// whoever listens meanwhile, so only one thread may ask.
Json eventOf(const Orvane::Payloads::FullAssemblyData& document, const std::wstring& workflow);

/// The name of an enumerator, for those who describe the same records.
std::string nameOf(Orvane::Payloads::ContainerStatus status);
std::string nameOf(Orvane::Payloads::ContainerType type);
std::string nameOf(Qx::CloudBrowser::Relationship::RelationType type);
