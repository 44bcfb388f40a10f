#pragma once

#include <string_view>

// Private: the service's strings, each defined in one place.
namespace Orvane::Payloads::Texts {

inline constexpr std::string_view active = "Active";
inline constexpr std::string_view archived = "Archived";
inline constexpr std::string_view inactive = "Inactive";
inline constexpr std::string_view deleted = "Deleted";

inline constexpr std::string_view folder = "FOLDER";
inline constexpr std::string_view project = "PROJECT";
inline constexpr std::string_view folders = "folders";
inline constexpr std::string_view projects = "projects";

inline constexpr std::string_view files = "files";
inline constexpr std::string_view relationships = "relationships";
inline constexpr std::string_view versions = "versions";

inline constexpr std::string_view derived = "DERIVED";
inline constexpr std::string_view dependency = "DEPENDENCY";
inline constexpr std::string_view xref = "XREF";
inline constexpr std::string_view auxiliary = "AUXILIARY";

inline constexpr std::string_view viewer = "VIEWER";
inline constexpr std::string_view controlled = "CONTROLLED";
inline constexpr std::string_view configuration = "Configuration";

// The values that describe a user's membership. Records store the membership as it was sent, so all
// but "true" are unused and only document what the service may send.
inline constexpr std::string_view isTrue = "true";
inline constexpr std::string_view isFalse = "false";
inline constexpr std::string_view notAMember = "NOT_A_MEMBER";
inline constexpr std::string_view moderatorInvited = "MODERATOR_INVITED";
inline constexpr std::string_view pendingModeratorApproval = "PENDING_MODERATOR_APPROVAL";

} // namespace Orvane::Payloads::Texts
