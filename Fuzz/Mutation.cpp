#include "Fuzz/Mutation.h"

#include <nlohmann/json.hpp>
#include <vector>

namespace OrvaneFuzz {

namespace {

using Json = nlohmann::json;

void collect(Json& value, std::vector<Json*>& values) {
    values.push_back(&value);
    if (value.is_structured())
        for (Json& part : value)
            collect(part, values);
}

Json& pick(Json& root, std::mt19937& random, bool (*isWanted)(const Json&)) {
    std::vector<Json*> values;
    collect(root, values);
    std::erase_if(values, [&](const Json* value) { return !isWanted(*value); });
    return values.empty() ? root : *values[random() % values.size()];
}

// Makes one change to a non-empty array or object.
void mutateParts(Json& whole, std::mt19937& random) {
    const auto anyPart = [&] { return std::next(whole.begin(), static_cast<std::ptrdiff_t>(random() % whole.size())); };
    switch (random() % 3) {
    case 0:
        std::swap(*anyPart(), *anyPart());
        break;
    case 1:
        whole.erase(anyPart());
        break;
    default:
        if (whole.is_array())
            whole.insert(anyPart(), Json(*anyPart()));
    }
}

} // namespace

std::string mutateValues(std::string body, std::mt19937& random) {
    Json root = Json::parse(body, nullptr, false);
    if (root.is_discarded() || body.size() < 2 || random() % 8 == 0) {
        if (!body.empty())
            body[random() % body.size()] = static_cast<char>(random());
        return body;
    }
    for (auto changes = 1 + random() % 4; changes > 0; --changes) {
        Json& parts = pick(root, random, [](const Json& value) { return value.is_structured() && !value.empty(); });
        if (random() % 2 == 0 && parts.is_structured() && !parts.empty()) {
            mutateParts(parts, random);
            continue;
        }
        // Mostly replaces one scalar (an id, a type or another word) with another.
        const bool isScalar = random() % 8 != 0;
        const auto isWanted =
            isScalar ? [](const Json& value) { return value.is_primitive(); } : [](const Json&) { return true; };
        const Json source = pick(root, random, isWanted);
        pick(root, random, isWanted) = source;
    }
    return root.dump();
}

} // namespace OrvaneFuzz
