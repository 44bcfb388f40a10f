#pragma once

#include <cstdint>
#include <functional>
#include <random>
#include <string>
#include <utility>
#include <vector>

namespace OrvaneFuzz {

/// Makes bodies that are JSON of about the right shape, with keys that are missing, twice there or of the wrong kind,
/// ids that several records share, and relationships that lead nowhere. One seed always gives the same bodies (with one
/// standard library).
class RandomBody {
public:
    explicit RandomBody(std::uint64_t seed) : random_(seed) {}

    std::string make();

    /// Every id that a body may hold.
    static const std::vector<std::string>& ids();

private:
    using Members = std::vector<std::pair<std::string, std::string>>;
    using MakeElement = std::function<std::string()>;

    bool chance(int percent);
    std::size_t below(std::size_t limit);
    const std::string& pick(const std::vector<std::string>& texts);
    std::string number();
    std::string anyText();
    std::string anyValue();
    std::string word(const std::vector<std::string>& known);
    std::string id(const std::string& kind);
    std::string object(Members members);
    std::string array(const MakeElement& makeElement);

    std::string links();
    std::string me();
    std::string reference(const std::string& kind);
    std::string type(const std::string& right);
    std::string project();
    std::string file();
    std::string version();
    std::string folder();
    std::string relationship();

    std::mt19937_64 random_;
};

} // namespace OrvaneFuzz
