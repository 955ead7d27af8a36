// Events as objects.

#include "platform/CEvent.h"

CEvent::CEvent(BOOL inicial, BOOL manual) : m_hObject(CreateEventW(nullptr, manual, inicial, nullptr)) {}

CEvent::~CEvent() {
    CloseHandle(m_hObject);
}

BOOL CEvent::Lock(DWORD milisegundos) {
    return WaitForSingleObject(m_hObject, milisegundos) == WAIT_OBJECT_0;
}
