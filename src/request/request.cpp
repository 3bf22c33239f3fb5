// The request base of the client library: the accessors that the protocol-fix request's vtable
// carries.
#include <protofix/request.h>

unsigned int IPDU::GetLastErr() { return m_lastError; }

CRequest::~CRequest() {
    // The items belong to the library; only the list is cleared here.
    m_events.clear();
}

int CRequest::GetRespondTpye() { return m_respondType; }

void CRequest::DelEventData(__EVENT_DATA* data) { m_events.remove(data); }
