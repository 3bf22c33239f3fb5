// The minimal request base of the surrounding client library: the part of IPDU and CRequest that
// the protocol-fix request needs, and the library's text helpers that the sections call.
//
// The names of this interface are the client library's own and are kept as it spells them,
// GetRespondTpye and parseUtf8JasonToAssic included: the library's callers and derived requests
// use these names, so they are not to be corrected.
#ifndef PROTOFIX_REQUEST_H
#define PROTOFIX_REQUEST_H

#include <protofix/export.h>

#include <json/json.h>

#include <list>
#include <mutex>
#include <string>

// An item of the request's event list; owned and defined by the client library.
struct __EVENT_DATA;

// The library's mutex. No routine of the protocol-fix request takes it.
class KZMutex {
public:
    void Lock() { m_mutex.lock(); }
    void Unlock() { m_mutex.unlock(); }

private:
    std::mutex m_mutex;
};

class PROTOFIX_API IPDU {
public:
    IPDU() = default;
    IPDU(const IPDU&) = delete;
    IPDU& operator=(const IPDU&) = delete;
    virtual ~IPDU() = default;

    virtual char* Serialize(int& len) = 0;
    virtual int Deserialize(const char* text, int len) = 0;
    virtual int GetRespondTpye() = 0;
    virtual unsigned int GetLastErr();
    virtual void DelEventData(__EVENT_DATA* data) = 0;

    // The library assigns request ids; the protocol-fix request only reads them.
    unsigned int GetRequestId() const { return m_requestId; }
    void SetRequestId(unsigned int id) { m_requestId = id; }

protected:
    unsigned long long m_reserved = 0;
    unsigned int m_requestId = 0;
    unsigned int m_reservedId = 0;
    unsigned int m_lastError = 0;
    unsigned int m_reservedError = 0;
};

class PROTOFIX_API CRequest : public IPDU {
public:
    CRequest() = default;
    ~CRequest() override;

    int GetRespondTpye() override;
    // Takes the item off the event list; the item itself belongs to the library.
    void DelEventData(__EVENT_DATA* data) override;

    // UTF-8 JSON text to the device's local code page and back. The local code page is UTF-8, so
    // both copy the bytes; the copy into a record never ends inside a multi-byte character.
    static void parseUtf8JasonToAssic(Json::Value& node, char* buf, int size);
    static void packetAssicToUtf8Jason(Json::Value& node, char* buf, int size);

protected:
    int m_state = -1;
    int m_respondType = -1;
    int m_reservedState[2] = {-1, -1};
    std::list<__EVENT_DATA*> m_events;
    KZMutex m_lock;
    void* m_reservedLink[2] = {nullptr, nullptr};
};

// A string node into a fixed text field: at most size - 1 bytes and a NUL; anything else is left.
PROTOFIX_API void parseJsonNodeToStr(const Json::Value& node, char* buf, int size);
// A fixed text field into a string node: at most size bytes, up to the first NUL.
PROTOFIX_API void packetStrToJsonNode(Json::Value& node, const char* buf, int size);
// As parseJsonNodeToStr and a NUL-terminated SetJsonString; convert asks for the code-page change.
PROTOFIX_API void GetJsonString(const Json::Value& node, char* buf, int size, bool convert);
PROTOFIX_API void SetJsonString(Json::Value& node, const char* text, bool convert);
// UTF-8 to the local code page (UTF-8 here: the text is returned as it is).
PROTOFIX_API std::string ConvertUtf8ToAnsi(const std::string& text);

#endif
