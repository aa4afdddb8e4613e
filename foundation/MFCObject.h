// Root of the persistent classes: run-time class name, serialisation and the
// two diagnostics hooks.
#pragma once

class CArchive;
class CString;

class CObject
{
public:
    virtual const char* GetRuntimeClassName() const { return "CObject"; }
    virtual ~CObject() = default;
    virtual void Serialize(CArchive& /*ar*/) {}
    virtual void AssertValid() const {}
    virtual void Dump(CString& /*out*/) const {}

protected:
    CObject() = default;
    CObject(const CObject&) = default;
    CObject& operator=(const CObject&) = default;
};
