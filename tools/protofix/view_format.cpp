#include "view_format.h"

#include <memory>
#include <sstream>
#include <utility>
#include <vector>

namespace protofix::tool {
namespace {

using protofix::describe::Descriptor;
using protofix::describe::Field;

// Longest line kept for a flat object written on one line.
constexpr std::size_t kFlatObjectWidth = 120;

bool IsScalar(const Json::Value& value) { return !value.isArray() && !value.isObject(); }

class ViewWriter {
public:
    explicit ViewWriter(bool compact = false) : m_compact(compact) {
        Json::StreamWriterBuilder builder;
        builder["indentation"] = "";
        builder["emitUTF8"] = true;
        m_scalar.reset(builder.newStreamWriter());
    }

    std::string Write(const Json::Value& value, const Descriptor* descriptor, int depth) {
        if (IsScalar(value)) return Scalar(value);
        if (value.isArray()) return Array(value, descriptor, depth);
        return Object(value, descriptor, depth);
    }

private:
    std::string Scalar(const Json::Value& value) {
        std::ostringstream out;
        m_scalar->write(value, &out);
        return out.str();
    }

    static std::string Indent(int depth) {
        return std::string(2 * static_cast<std::size_t>(depth), ' ');
    }

    // Elements of an array of records share the element's descriptor.
    std::string Array(const Json::Value& array, const Descriptor* descriptor, int depth) {
        if (array.empty()) return "[]";
        if (m_compact) {
            std::string text = "[";
            for (Json::ArrayIndex i = 0; i < array.size(); ++i) {
                text += (i != 0 ? "," : "") + Write(array[i], descriptor, depth + 1);
            }
            return text + "]";
        }
        bool flat = true;
        for (const Json::Value& element : array) flat = flat && IsScalar(element);
        std::string text = "[";
        for (Json::ArrayIndex i = 0; i < array.size(); ++i) {
            if (i != 0) text += ",";
            text += flat ? (i != 0 ? " " : "") : "\n" + Indent(depth + 1);
            text += Write(array[i], descriptor, depth + 1);
        }
        return text + (flat ? "]" : "\n" + Indent(depth) + "]");
    }

    std::string Object(const Json::Value& object, const Descriptor* descriptor, int depth) {
        if (object.empty()) return "{}";
        // Members in the record's field order, then any others.
        std::vector<std::pair<std::string, const Descriptor*>> members;
        if (descriptor != nullptr) {
            for (const Field& field : descriptor->fields) {
                if (!field.name.empty() && object.isMember(field.name)) {
                    members.emplace_back(field.name, field.record);
                }
            }
        }
        for (const std::string& name : object.getMemberNames()) {
            bool listed = false;
            for (const auto& member : members) listed = listed || member.first == name;
            if (!listed) members.emplace_back(name, nullptr);
        }

        if (m_compact) {
            std::string text = "{";
            for (std::size_t i = 0; i < members.size(); ++i) {
                text += (i != 0 ? "," : "") + Scalar(Json::Value(members[i].first)) + ":" +
                        Write(object[members[i].first], members[i].second, depth + 1);
            }
            return text + "}";
        }
        bool flat = true;
        for (const auto& member : members) flat = flat && IsScalar(object[member.first]);
        if (flat) {
            std::string line = "{";
            for (std::size_t i = 0; i < members.size(); ++i) {
                if (i != 0) line += ", ";
                line +=
                    Scalar(Json::Value(members[i].first)) + ": " + Scalar(object[members[i].first]);
            }
            line += "}";
            if (Indent(depth).size() + line.size() <= kFlatObjectWidth) return line;
        }
        std::string text = "{";
        for (std::size_t i = 0; i < members.size(); ++i) {
            text += (i != 0 ? ",\n" : "\n") + Indent(depth + 1) +
                    Scalar(Json::Value(members[i].first)) + ": " +
                    Write(object[members[i].first], members[i].second, depth + 1);
        }
        return text + "\n" + Indent(depth) + "}";
    }

    bool m_compact;
    std::unique_ptr<Json::StreamWriter> m_scalar;
};

}  // namespace

std::string FormatView(const Descriptor& descriptor, const Json::Value& view, bool pretty) {
    ViewWriter writer(!pretty);
    return writer.Write(view, &descriptor, 0) + "\n";
}

std::string FormatPretty(const Json::Value& value) {
    ViewWriter writer;
    return writer.Write(value, nullptr, 0) + "\n";
}

std::string FormatJson(const Json::Value& value, bool pretty) {
    return pretty ? FormatPretty(value) : Json::FastWriter().write(value);
}

std::string FormatJsonText(const std::string& text, bool pretty) {
    Json::Value value;
    Json::Reader reader;
    if (pretty && reader.parse(text, value, false)) return FormatPretty(value);
    return text.empty() || text.back() != '\n' ? text + "\n" : text;
}

}  // namespace protofix::tool
