#pragma once

#include "Server/Orvane/Payloads/FullAssemblyData.h"
#include "Server/Orvane/Payloads/FullAssemblyDataV3.h"

#include <map>
#include <string>
#include <vector>

namespace OrvaneFuzz {

/// What a document says when it is asked everything: each answer as text under its question, so that two documents, or
/// two ways to read one, are easy to compare.
using Answers = std::map<std::string, std::string>;

/// Asks every query of the first generation. Queries that take an id are asked for each of `ids`.
Answers answersOf(const Orvane::Payloads::FullAssemblyData& document, const std::vector<std::string>& ids);

/// Asks every query of either generation.
Answers answersOf(const Orvane::Payloads::FullAssemblyDataV3& document, const std::vector<std::string>& ids);

/// The usage event that the document reports, as text. It takes the place of whoever listens meanwhile, so only one
/// thread may ask.
std::string reportOf(const Orvane::Payloads::FullAssemblyData& document);

} // namespace OrvaneFuzz
