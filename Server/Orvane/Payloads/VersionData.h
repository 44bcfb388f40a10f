#pragma once

#include "Server/Orvane/Payloads/Data.h"
#include "Server/Orvane/qxorvanedm10_export.h"

#include <string>

namespace Orvane::Payloads {

/// One version of a file. A plain value; may be read from several threads at once.
///
/// References that accessors give are good until the record is assigned to or destroyed.
class QXORVANEDM10_EXPORT VersionData : public Data {
public:
    /// Reads one element of "included.versions". A node whose "type" is not "versions" gives its "id" and
    /// "type" alone; a key that is missing, null or of the wrong kind leaves its text empty, but a number or
    /// boolean is taken as text.
    explicit VersionData(const Qx::JSONNode& node);

    /// "versions".
    static std::string dataType();

    /// The key "name".
    const std::string& getName() const;

    /// The key "file.id": the file that this is a version of.
    const std::string& getFileId() const;

    /// The key "title".
    const std::string& getTitle() const;

private:
    std::string name_;
    std::string fileId_;
    std::string title_;
};

} // namespace Orvane::Payloads
