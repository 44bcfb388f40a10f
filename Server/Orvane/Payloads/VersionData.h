#pragma once

#include "Server/Orvane/Payloads/Data.h"
#include "Server/Orvane/qxorvanedm10_export.h"

#include <string>

namespace Orvane::Payloads {

/// One version of a file. A plain value; may be read from several threads at once.
///
/// References that accessors return are valid until the record is assigned to or destroyed.
class QXORVANEDM10_EXPORT VersionData : public Data {
public:
    /// Reads one element of "included.versions". If the "type" of the node is not "versions", reads
    /// only "id" and "type". The string of a key that is missing, null, an object or an array is
    /// empty; a number or boolean is converted to text.
    explicit VersionData(const Qx::JSONNode& node);

    /// Returns "versions".
    static std::string dataType();

    /// The value of "name".
    const std::string& getName() const;

    /// The value of "file.id": the id of the file that this is a version of.
    const std::string& getFileId() const;

    /// The value of "title".
    const std::string& getTitle() const;

private:
    std::string name_;
    std::string fileId_;
    std::string title_;
};

} // namespace Orvane::Payloads
