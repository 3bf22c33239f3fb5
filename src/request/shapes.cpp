// Lookups that read a table of the wrong shape as absent, and writes that leave such a value be.
#include "request/fields.h"

#include <cstring>

namespace protofix {

const Json::Value& Member(const Json::Value& v, const char* key) {
    if (!v.isObject() || key == nullptr) return Json::Value::nullSingleton();
    const Json::Value* found = v.find(key, key + std::strlen(key));
    return found != nullptr ? *found : Json::Value::nullSingleton();
}

const Json::Value* FindMember(const Json::Value& v, const std::string& key) {
    return v.isObject() ? v.find(key.data(), key.data() + key.size()) : nullptr;
}

const Json::Value& Member(const Json::Value& v, const std::string& key) {
    const Json::Value* found = FindMember(v, key);
    return found != nullptr ? *found : Json::Value::nullSingleton();
}

const Json::Value& Element(const Json::Value& v, Json::ArrayIndex index) {
    if (!v.isArray() || index >= v.size()) return Json::Value::nullSingleton();
    return v[index];
}

const Json::Value& Path(const Json::Value& v, std::initializer_list<const char*> keys) {
    const Json::Value* at = &v;
    for (const char* key : keys) at = &Member(*at, key);
    return *at;
}

Json::Value* MemberToWrite(Json::Value& v, const char* key) {
    if (!IsObjectOrNull(v) || key == nullptr) return nullptr;
    return &v[key];
}

Json::Value* MemberToWrite(Json::Value& v, const std::string& key) {
    if (!IsObjectOrNull(v)) return nullptr;
    return &v[key];
}

Json::Value* ElementToWrite(Json::Value& v, Json::ArrayIndex index) {
    if (!IsArrayOrNull(v)) return nullptr;
    return &v[index];
}

}  // namespace protofix
