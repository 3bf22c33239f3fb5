#include "diagnosis.h"

#include "names.h"
#include "records.h"

#include <describe/describe.h>
#include <protofix/protofix.h>

#include <algorithm>

namespace protofix::tool {
namespace {

// The section's member path of an F5 text, member by member; null where one is missing.
const Json::Value* AtMembers(const Json::Value& document, const std::vector<std::string>& path) {
    const Json::Value* at = &document;
    for (const std::string& name : path) {
        if (!at->isObject()) return nullptr;
        at = at->find(name.data(), name.data() + name.size());
        if (at == nullptr) return nullptr;
    }
    return path.empty() ? nullptr : at;
}

// A view of the section's record: an object whose members all name fields of the record and
// that the record takes.
bool IsRecordView(const Json::Value& input, const Section& section) {
    const describe::Descriptor* descriptor = describe::FindDescriptor(section.record);
    if (descriptor == nullptr || !input.isObject() || input.empty()) return false;
    for (const std::string& name : input.getMemberNames()) {
        const bool field = std::any_of(
            descriptor->fields.begin(), descriptor->fields.end(),
            [&](const describe::Field& f) { return !f.name.empty() && f.name == name; });
        if (!field) return false;
    }
    Bytes scratch(section.recordSize, 0);
    std::string error;
    return describe::FromJson(*descriptor, input, scratch.data(), error);
}

std::string Names(const std::vector<std::string>& names) {
    std::string text;
    for (std::size_t i = 0; i < names.size(); ++i) {
        text += (i == 0 ? "" : i + 1 == names.size() ? " or " : ", ") + names[i];
    }
    return text;
}

std::vector<Path> Children(const Json::Value& node, const Path& at) {
    std::vector<Path> children;
    if (node.isObject()) {
        for (const std::string& name : node.getMemberNames()) {
            children.push_back(at);
            children.back().emplace_back(name);
        }
    } else if (node.isArray()) {
        for (Json::ArrayIndex i = 0; i < node.size(); ++i) {
            children.push_back(at);
            children.back().emplace_back(i);
        }
    }
    return children;
}

const Json::Value& At(const Json::Value& value, const Path& path) {
    const Json::Value* at = &value;
    for (const PathStep& step : path) {
        if (const auto* index = std::get_if<Json::ArrayIndex>(&step)) {
            at = &(*at)[*index];
        } else {
            at = &(*at)[std::get<std::string>(step)];
        }
    }
    return *at;
}

Shape ShapeOf(const Path& path) {
    Shape shape;
    for (const PathStep& step : path) {
        shape = std::holds_alternative<Json::ArrayIndex>(step)
                    ? ShapeElement(shape)
                    : ShapeChild(shape, std::get<std::string>(step));
    }
    return shape;
}

void Remove(Json::Value& value, const Path& path) {
    if (path.empty()) {
        value = Json::Value();
        return;
    }
    Json::Value* at = &value;
    for (std::size_t i = 0; i + 1 < path.size(); ++i) {
        if (const auto* index = std::get_if<Json::ArrayIndex>(&path[i])) {
            if (!at->isArray() || *index >= at->size()) return;
            at = &(*at)[*index];
        } else {
            const std::string& name = std::get<std::string>(path[i]);
            if (!at->isObject() || !at->isMember(name)) return;
            at = &(*at)[name];
        }
    }
    if (const auto* index = std::get_if<Json::ArrayIndex>(&path.back())) {
        if (at->isArray() && *index < at->size()) (*at)[*index] = Json::Value();
    } else if (at->isObject()) {
        at->removeMember(std::get<std::string>(path.back()));
    }
}

}  // namespace

bool IsEnvelope(const Json::Value& value) {
    if (!value.isObject() || !value["params"].isObject() || !value["params"].isMember("table")) {
        return false;
    }
    for (const std::string& name : value.getMemberNames()) {
        if (name != "params" && name != "result" && name != "channel" && name != "id") return false;
    }
    return true;
}

Json::Value Without(const Json::Value& value, const std::vector<Path>& paths) {
    Json::Value copy = value;
    for (const Path& path : paths) Remove(copy, path);
    return copy;
}

const Json::Value* F5Member(const Json::Value& document, const Section& section) {
    return AtMembers(document, F5MemberPath(section));
}

std::string MisspeltF5Member(const Json::Value& document, const Section& section) {
    const std::vector<std::string> path = F5MemberPath(section);
    const Json::Value* at = &document;
    std::string spelt;
    for (const std::string& name : path) {
        if (!at->isObject()) return "";
        const Json::Value* next = at->find(name.data(), name.data() + name.size());
        if (next == nullptr) {
            const std::string other = Suggest(name, at->getMemberNames());
            if (other.empty()) return "";
            next = &(*at)[other];
            spelt += (spelt.empty() ? "" : ".") + other;
        } else {
            spelt += (spelt.empty() ? "" : ".") + name;
        }
        at = next;
    }
    return spelt;
}

std::string DescribeInput(const Json::Value& input, const Section& wanted, Role role,
                          Knowledge& knowledge) {
    if (!input.isObject() && !input.isArray()) return KindName(input.type());
    if (IsEnvelope(input)) return "a request envelope";
    if (wanted.HasRecord() && IsRecordView(input, wanted)) {
        return std::string("a record of section ") + wanted.name + " in the named-field form (" +
               wanted.record + (role == Role::kRecord ? ")" : "; serialize reads it)");
    }
    std::vector<std::string> texts;
    std::vector<std::string> misspelt;
    for (const Section* s = SectionsBegin(); s != SectionsEnd(); ++s) {
        if (!s->AcceptsText()) continue;
        if (F5Member(input, *s) != nullptr) {
            texts.emplace_back(s->name);
        } else if (!MisspeltF5Member(input, *s).empty()) {
            misspelt.push_back(std::string(s->name) + " (its member spelt \"" +
                               MisspeltF5Member(input, *s) + "\")");
        }
    }
    // A member shared by several sections ("Encode") names the one asked for when it is one.
    if (std::find(texts.begin(), texts.end(), wanted.name) != texts.end()) texts = {wanted.name};
    if (!texts.empty()) {
        return "the F5 text of section " + Names(texts) +
               (role == Role::kF5 ? "" : " (--f5 takes it)");
    }
    if (!misspelt.empty()) return "the F5 text of section " + Names(misspelt);

    Schema given;
    given.Add(input);
    const Section* best = nullptr;
    std::size_t bestShared = 0;
    // A table the section read nothing of is another's only when that one shares more of its keys
    // than the section's own example does (its values may just be of the wrong kind).
    const std::size_t own =
        role == Role::kTable ? knowledge.ExampleSchema(wanted, "table").Shared(given) : 0;
    for (const Section* s = SectionsBegin(); s != SectionsEnd(); ++s) {
        if (role == Role::kTable && s == &wanted) continue;
        const std::size_t shared = knowledge.ExampleSchema(*s, "table").Shared(given);
        if (shared <= own) continue;
        if (shared > bestShared) {
            best = s;
            bestShared = shared;
        }
    }
    if (best != nullptr) {
        return std::string("the table of section ") + best->name +
               (role == Role::kTable ? "" : " (deserialize reads it)");
    }
    for (const Section* s = SectionsBegin(); s != SectionsEnd(); ++s) {
        if (s != &wanted && s->HasRecord() && IsRecordView(input, *s)) {
            return std::string("a record of section ") + s->name + " in the named-field form (" +
                   s->record + ")";
        }
    }
    return "";
}

namespace {

// The value without the object members of shapes the schema does not know (array elements keep
// their places, so every path into the part is a path into the value).
Json::Value KnownPart(const Json::Value& value, const Schema& schema, const Shape& shape) {
    if (value.isObject()) {
        Json::Value part(Json::objectValue);
        for (const std::string& name : value.getMemberNames()) {
            const Shape child = ShapeChild(shape, name);
            if (schema.Knows(child)) part[name] = KnownPart(value[name], schema, child);
        }
        return part;
    }
    if (value.isArray()) {
        Json::Value part(Json::arrayValue);
        for (Json::ArrayIndex i = 0; i < value.size(); ++i) {
            part[i] = KnownPart(value[i], schema, ShapeElement(shape));
        }
        return part;
    }
    return value;
}

}  // namespace

std::optional<Path> FindCulprit(const Json::Value& input,
                                const std::function<bool(const Json::Value&)>& throws,
                                const Schema* example) {
    if (example != nullptr) {
        const Json::Value known = KnownPart(input, *example, Shape());
        if (known != input && throws(known)) return FindCulprit(known, throws);
    }
    Path at;
    for (;;) {
        const std::vector<Path> children = Children(At(input, at), at);
        if (children.empty() || throws(Without(input, children))) break;
        // The fewest leading children whose absence lets the conversion through.
        std::size_t low = 0;  // throws with these removed
        std::size_t high = children.size();
        while (high - low > 1) {
            const std::size_t middle = low + (high - low) / 2;
            const std::vector<Path> removed(children.begin(),
                                            children.begin() + static_cast<std::ptrdiff_t>(middle));
            (throws(Without(input, removed)) ? low : high) = middle;
        }
        const Path& child = children[high - 1];
        if (throws(Without(input, {child}))) break;
        at = child;
    }
    if (at.empty()) return std::nullopt;
    return at;
}

std::string WrongKind(const std::string& name, const Section& section,
                      const std::optional<Path>& at, const Schema& example) {
    std::string text = name + ": a value of the wrong JSON kind for section " + section.name;
    if (!at) return text;
    const std::string expected = example.KindAt(ShapeOf(*at));
    return text + " at " + FormatPath(*at) + " (" +
           (expected.empty() ? "a value of another kind" : expected) + " was expected)";
}

std::string RefusalReason(const Section& section, const Job& job, const Json::Value* table) {
    const std::string name = section.name;
    const bool packet = job.command == Command::kSerialize;
    if (name == "General" || name == "Locales") {
        if (job.subMode != 0 && job.subMode != 1) {
            return "section " + name + " has sub-modes 0 and 1 (--sub-mode)";
        }
        if (packet && job.subMode == 1 && !job.current.Given()) {
            return "in sub-mode 1 section " + name +
                   " writes into the device's current reply: give it with --current";
        }
    }
    if (name == "Ptz") {
        const bool inRange = job.channel >= 0 && job.channel < KZ_MAX_SERIAL_PORTS;
        if (!job.TextMode() && !inRange && (packet || (table != nullptr && table->isObject()))) {
            return "section Ptz has channels 0 to " + std::to_string(KZ_MAX_SERIAL_PORTS - 1) +
                   " (--channel " + std::to_string(job.channel) + ")";
        }
        if (job.TextMode() && !packet && job.channel == -1) {
            return "section Ptz merges into the F5 text of a channel: --channel -1 names none";
        }
        if (job.TextMode() && table != nullptr && !table->isObject()) {
            return "section Ptz merges only a table that is an object";
        }
    }
    if (table == nullptr) return "";
    if (name == "RTSP" && (!table->isObject() || !table->isMember("Port"))) {
        return "section RTSP requires \"Port\"";
    }
    if (name == "IPv6") return "section IPv6 reads a table only when its \"Enable\" is true";
    if (name == "RemoteStorageLimit" && !job.TextMode() && !table->isArray()) {
        return "section RemoteStorageLimit reads only a table that is a list ([{...}])";
    }
    return "";
}

}  // namespace protofix::tool
