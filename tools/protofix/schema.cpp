#include "schema.h"

#include "examples_data.h"

#include <algorithm>

namespace protofix::tool {

std::string_view EmbeddedExampleText(std::string_view file) {
    for (std::size_t i = 0; i < kEmbeddedExampleCount; ++i) {
        if (file == kEmbeddedExamples[i].file) return kEmbeddedExamples[i].text;
    }
    return {};
}

Shape ShapeChild(const Shape& parent, const std::string& member) {
    return parent.empty() ? member : parent + '\0' + member;
}

Shape ShapeElement(const Shape& parent) { return ShapeChild(parent, "[]"); }

void Schema::Add(const Json::Value& value, const Shape& shape) {
    m_kinds.emplace(shape, value.type());
    if (value.isObject()) {
        std::vector<std::string>& members = m_members[shape];
        for (const std::string& name : value.getMemberNames()) {
            if (std::find(members.begin(), members.end(), name) == members.end()) {
                members.push_back(name);
            }
            Add(value[name], ShapeChild(shape, name));
        }
    } else if (value.isArray()) {
        for (const Json::Value& element : value) Add(element, ShapeElement(shape));
    }
}

std::string KindName(Json::ValueType type) {
    switch (type) {
        case Json::intValue:
        case Json::uintValue:
        case Json::realValue: return "a number";
        case Json::booleanValue: return "true or false";
        case Json::stringValue: return "a text";
        case Json::arrayValue: return "an array";
        case Json::objectValue: return "an object";
        case Json::nullValue: break;
    }
    return "null";
}

std::string Schema::KindAt(const Shape& shape) const {
    const auto found = m_kinds.find(shape);
    return found == m_kinds.end() || found->second == Json::nullValue ? ""
                                                                      : KindName(found->second);
}

std::vector<std::string> Schema::MembersOf(const Shape& shape) const {
    const auto found = m_members.find(shape);
    return found != m_members.end() ? found->second : std::vector<std::string>();
}

std::size_t Schema::Shared(const Schema& other) const {
    std::size_t shared = 0;
    for (const auto& [shape, kind] : other.m_kinds) {
        if (!shape.empty() && Knows(shape)) ++shared;
    }
    return shared;
}

namespace {

// Calls visit(v) for every value at the shape's steps from `from` on.
template <class Visit>
void AtShape(const Json::Value& value, const Shape& shape, std::size_t from, Visit&& visit) {
    if (from > shape.size()) {
        visit(value);
        return;
    }
    const std::size_t end = std::min(shape.find('\0', from), shape.size());
    const std::string step = shape.substr(from, end - from);
    if (step == "[]") {
        if (!value.isArray()) return;
        for (const Json::Value& element : value) AtShape(element, shape, end + 1, visit);
    } else if (value.isObject()) {
        const Json::Value* member = value.find(step.data(), step.data() + step.size());
        if (member != nullptr) AtShape(*member, shape, end + 1, visit);
    }
}

}  // namespace

bool ShapeOccurs(const Json::Value& value, const Shape& shape) {
    bool found = false;
    if (shape.empty()) return !value.isNull();
    AtShape(value, shape, 0, [&](const Json::Value&) { found = true; });
    return found;
}

std::vector<std::string> MembersAt(const Json::Value& value, const Shape& shape) {
    std::vector<std::string> names;
    const auto add = [&](const Json::Value& at) {
        if (!at.isObject()) return;
        for (const std::string& name : at.getMemberNames()) {
            if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
        }
    };
    if (shape.empty()) {
        add(value);
    } else {
        AtShape(value, shape, 0, add);
    }
    return names;
}

const Json::Value& Knowledge::Example(const Section& section, const char* kind) {
    const std::string file = ExampleFile(section, kind);
    std::unique_ptr<Json::Value>& example = m_examples[file];
    if (!example) {
        example = std::make_unique<Json::Value>();
        const std::string_view text = EmbeddedExampleText(file);
        Json::Reader reader;
        if (!text.empty() &&
            !reader.parse(text.data(), text.data() + text.size(), *example, false)) {
            *example = Json::Value();
        }
    }
    return *example;
}

const Schema& Knowledge::ExampleSchema(const Section& section, const char* kind) {
    const std::string file = ExampleFile(section, kind);
    std::unique_ptr<Schema>& schema = m_schemas[file];
    if (!schema) {
        schema = std::make_unique<Schema>();
        const Json::Value& example = Example(section, kind);
        if (!example.isNull()) schema->Add(example);
    }
    return *schema;
}

}  // namespace protofix::tool
