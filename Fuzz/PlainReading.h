#pragma once

#include "Fuzz/AnswerText.h"
#include "Fuzz/Answers.h"

#include <map>
#include <string>
#include <unordered_map>
#include <vector>

namespace OrvaneFuzz {

/// A second reading of a body that shares nothing with the library: another parser, records as plain texts, and each
/// query as a walk over them. Slow, and meant to be checked by eye.
class PlainReading {
public:
    /// Reads a body that is JSON.
    explicit PlainReading(const std::string& body);

    /// What `answersOf` gives for the library's documents of either generation.
    Answers firstAnswers(const std::vector<std::string>& ids) const;
    Answers answersV3(const std::vector<std::string>& ids) const;

    /// What `reportOf` gives for them.
    std::string firstReport() const;
    std::string reportV3() const;

private:
    /// The fields of a record as they are, unlike those of a `Record`. Enumerators are numbers, flags are "yes" or
    /// "no", and a text that may be missing is so.
    using Fields = std::map<std::string, std::string>;
    using Names = std::vector<std::wstring>;

    Names projectsIn(const std::string& status) const;
    Names projectsClosed() const;
    Names withFoldersIn(const std::string& status) const;
    Names withFoldersClosed() const;
    const Fields* projectOf(const std::string& id) const;
    Answers statusAnswers(const Names& archived, const Names& deleted, const Names& inactive,
                          const Names& closed) const;
    std::unordered_map<std::wstring, std::wstring> properties(const std::wstring& version, const Names& archived,
                                                              const Names& deleted, const Names& closed) const;
    std::wstring projectType() const;

    Fields data_;                                             ///< "id", "type" and the two counts.
    std::vector<Fields> projects_;                            ///< All, in order.
    std::map<std::string, Fields> files_;                     ///< By id, the first of each.
    std::map<std::string, Fields> versions_;                  ///< By id, the last of each.
    std::map<std::string, Fields> folders_;                   ///< By id, the last of each.
    std::map<std::string, std::vector<std::string>> actions_; ///< Of each folder.
    std::vector<Fields> relationships_;                       ///< All, in order.
    std::map<std::string, std::string> titles_;               ///< Of the files referred to, by id, the first of each.
};

} // namespace OrvaneFuzz
