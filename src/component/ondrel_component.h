/*
 * The component's classes from C and C++: the shapes of the automation platform as this library uses them.
 *
 * The library exports four functions, whose types stand at the end of this file. Texts are UTF-16; memory that
 * crosses is taken from malloc and given back by the functions here. A caller that gets a pointer to an
 * interface owns a reference and calls Release. An object is used by one thread at a time.
 *
 *   void* library = dlopen("libOndrelCorpComponents.so.1", RTLD_NOW);
 *   DllGetClassObjectFunction* getClassObject =
 *       (DllGetClassObjectFunction*)dlsym(library, "DllGetClassObject");
 *   IDispatch* invoice;
 *   OndrelCreateObject(getClassObject, u"OndrelCorpComponents.invoice", &invoice);
 */
#ifndef ONDREL_COMPONENT_H
#define ONDREL_COMPONENT_H

/* C, which rules for C++ do not fit. NOLINTBEGIN */

#include <stdint.h>
#include <stdlib.h>
#include <string.h>
#include <uchar.h>

#ifdef __cplusplus
extern "C" {
#endif

/* ---- status codes: negative ones are failures */

typedef int32_t HRESULT;

#define ONDREL_STATUS(code) ((HRESULT)(code))
#define S_OK ((HRESULT)0)
#define S_FALSE ((HRESULT)1)
#define E_NOTIMPL ONDREL_STATUS(0x80004001)
#define E_NOINTERFACE ONDREL_STATUS(0x80004002)
#define E_POINTER ONDREL_STATUS(0x80004003)
#define E_FAIL ONDREL_STATUS(0x80004005)
#define E_OUTOFMEMORY ONDREL_STATUS(0x8007000E)
#define E_INVALIDARG ONDREL_STATUS(0x80070057)
#define DISP_E_MEMBERNOTFOUND ONDREL_STATUS(0x80020003)
#define DISP_E_PARAMNOTFOUND ONDREL_STATUS(0x80020004)
#define DISP_E_UNKNOWNNAME ONDREL_STATUS(0x80020006)
#define DISP_E_EXCEPTION ONDREL_STATUS(0x80020009)
#define DISP_E_PARAMNOTOPTIONAL ONDREL_STATUS(0x8002000F)
#define CLASS_E_NOAGGREGATION ONDREL_STATUS(0x80040110)
#define CLASS_E_CLASSNOTAVAILABLE ONDREL_STATUS(0x80040111)
#define SELFREG_E_CLASS ONDREL_STATUS(0x80040201)

/* Number of an error as a page knows it, from the status of an EXCEPINFO. */
static inline int32_t OndrelErrorNumber(int32_t scode) {
  return (scode & ~0xFFFF) == ONDREL_STATUS(0x800A0000) ? scode & 0xFFFF : scode;
}

/* ---- identifiers */

typedef struct GUID {
  uint32_t Data1;
  uint16_t Data2, Data3;
  uint8_t Data4[8];
} GUID;

static const GUID IID_IUnknown = {0x00000000, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
static const GUID IID_IClassFactory = {0x00000001, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
static const GUID IID_IDispatch = {0x00020400, 0x0000, 0x0000, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};

/* The type library's id. As a class id it stands for the directory of the classes, an object with the members
 * CreateObject(name) and ClassId(name), which finds classes by the names that were registered. */
static const GUID LIBID_OndrelCorpComponents = {
    0x65263065, 0x0602, 0x4A32, {0x8F, 0x35, 0xCE, 0xB5, 0xAE, 0x54, 0x19, 0x1E}};

/* ---- texts: UTF-16 with a zero behind, and their length in bytes in the 4 bytes before */

typedef char16_t OLECHAR;
typedef OLECHAR* BSTR;

static inline BSTR SysAllocStringLen(const OLECHAR* text, uint32_t length) {
  const uint32_t bytes = length * (uint32_t)sizeof(OLECHAR);
  char* const block = (char*)malloc(sizeof bytes + bytes + sizeof(OLECHAR));
  if (!block) return NULL;
  memcpy(block, &bytes, sizeof bytes);
  if (text && bytes) memcpy(block + sizeof bytes, text, bytes);
  memset(block + sizeof bytes + bytes, 0, sizeof(OLECHAR));
  /* cppcheck-suppress CastIntegerToAddressAtReturn */
  return (BSTR)(void*)(block + sizeof bytes);
}

static inline BSTR SysAllocString(const OLECHAR* text) {
  uint32_t length = 0;
  if (!text) return NULL;
  while (text[length]) ++length;
  return SysAllocStringLen(text, length);
}

static inline uint32_t SysStringLen(BSTR text) {
  uint32_t bytes = 0;
  if (text) memcpy(&bytes, (char*)text - sizeof bytes, sizeof bytes);
  return bytes / (uint32_t)sizeof(OLECHAR);
}

static inline void SysFreeString(BSTR text) {
  if (text) free((char*)text - sizeof(uint32_t));
}

/* ---- interfaces */

typedef struct VARIANT VARIANT;
typedef struct IUnknown IUnknown;
typedef struct IClassFactory IClassFactory;
typedef struct IDispatch IDispatch;

typedef int32_t DISPID;
#define DISPID_VALUE 0
#define DISPID_UNKNOWN (-1)
#define DISPID_PROPERTYPUT (-3)

#define DISPATCH_METHOD 1
#define DISPATCH_PROPERTYGET 2
#define DISPATCH_PROPERTYPUT 4
#define DISPATCH_PROPERTYPUTREF 8

/* Arguments stand from last to first. The named ones come first, each with the place of its parameter; the new
 * value of a property has the name DISPID_PROPERTYPUT. */
typedef struct DISPPARAMS {
  VARIANT* rgvarg;
  DISPID* rgdispidNamedArgs;
  uint32_t cArgs;
  uint32_t cNamedArgs;
} DISPPARAMS;

/* What Invoke fills when it gives DISP_E_EXCEPTION; the caller frees the texts. */
typedef struct EXCEPINFO {
  uint16_t wCode;
  uint16_t wReserved;
  BSTR bstrSource;
  BSTR bstrDescription;
  BSTR bstrHelpFile;
  uint32_t dwHelpContext;
  void* pvReserved;
  HRESULT (*pfnDeferredFillIn)(struct EXCEPINFO*);
  int32_t scode;
} EXCEPINFO;

typedef struct IUnknownVtbl {
  HRESULT (*QueryInterface)(IUnknown* self, const GUID* interfaceId, void** object);
  uint32_t (*AddRef)(IUnknown* self);
  uint32_t (*Release)(IUnknown* self);
} IUnknownVtbl;

struct IUnknown {
  const IUnknownVtbl* lpVtbl;
};

typedef struct IClassFactoryVtbl {
  HRESULT (*QueryInterface)(IClassFactory* self, const GUID* interfaceId, void** object);
  uint32_t (*AddRef)(IClassFactory* self);
  uint32_t (*Release)(IClassFactory* self);
  HRESULT (*CreateInstance)(IClassFactory* self, IUnknown* outer, const GUID* interfaceId, void** object);
  HRESULT (*LockServer)(IClassFactory* self, int lock);
} IClassFactoryVtbl;

struct IClassFactory {
  const IClassFactoryVtbl* lpVtbl;
};

/* The default interfaces of the classes have this shape too. There is no type information: GetTypeInfoCount
 * gives 0. The number of a member depends on its name alone. */
typedef struct IDispatchVtbl {
  HRESULT (*QueryInterface)(IDispatch* self, const GUID* interfaceId, void** object);
  uint32_t (*AddRef)(IDispatch* self);
  uint32_t (*Release)(IDispatch* self);
  HRESULT (*GetTypeInfoCount)(IDispatch* self, uint32_t* count);
  HRESULT (*GetTypeInfo)(IDispatch* self, uint32_t place, uint32_t locale, void** typeInfo);
  HRESULT(*GetIDsOfNames)
  (IDispatch* self, const GUID* reserved, OLECHAR** names, uint32_t count, uint32_t locale, DISPID* ids);
  HRESULT(*Invoke)
  (IDispatch* self, DISPID member, const GUID* reserved, uint32_t locale, uint16_t flags,
   DISPPARAMS* arguments, VARIANT* result, EXCEPINFO* error, uint32_t* wrongArgument);
} IDispatchVtbl;

struct IDispatch {
  const IDispatchVtbl* lpVtbl;
};

/* ---- values */

typedef uint16_t VARTYPE;
enum {
  VT_EMPTY = 0,
  VT_NULL = 1,
  VT_I2 = 2,
  VT_I4 = 3,
  VT_R4 = 4,
  VT_R8 = 5,
  VT_CY = 6,
  VT_DATE = 7,
  VT_BSTR = 8,
  VT_DISPATCH = 9,
  VT_ERROR = 10,
  VT_BOOL = 11,
  VT_VARIANT = 12,
  VT_UNKNOWN = 13,
  VT_UI1 = 17,
  VT_I8 = 20,
  VT_ARRAY = 0x2000,
  VT_BYREF = 0x4000
};
#define VARIANT_TRUE ((int16_t)-1)
#define VARIANT_FALSE ((int16_t)0)

/* A list of VARIANTs in `pvData`, the first of which has the index `lLbound`. */
typedef struct SAFEARRAY {
  uint32_t cElements;
  int32_t lLbound;
  VARIANT* pvData;
} SAFEARRAY;

/* An argument of VT_ERROR with DISP_E_PARAMNOTFOUND is one that was left out. */
struct VARIANT {
  VARTYPE vt;
  uint16_t wReserved1, wReserved2, wReserved3;
  union {
    uint8_t bVal;
    int16_t iVal;
    int16_t boolVal;
    int32_t lVal;
    int32_t scode;
    int64_t llVal;
    int64_t cyVal; /* ten-thousandths */
    float fltVal;
    double dblVal;
    double date; /* days since 1899-12-30 */
    BSTR bstrVal;
    IUnknown* punkVal;
    IDispatch* pdispVal;
    SAFEARRAY* parray;
    uint8_t* pbVal;
    int16_t* piVal;
    int16_t* pboolVal;
    int32_t* plVal;
    int64_t* pllVal;
    float* pfltVal;
    double* pdblVal;
    double* pdate;
    BSTR* pbstrVal;
    IDispatch** ppdispVal;
    VARIANT* pvarVal;
    void* byref;
  };
};

static inline void VariantInit(VARIANT* value) {
  /* cppcheck-suppress memsetClassFloat */
  memset(value, 0, sizeof *value);
}

/* Gives back what the value owns, which nothing by reference is, and leaves it empty. */
static inline void VariantClear(VARIANT* value) {
  uint32_t k;
  if (value->vt == VT_BSTR) SysFreeString(value->bstrVal);
  if ((value->vt == VT_DISPATCH || value->vt == VT_UNKNOWN) && value->punkVal)
    value->punkVal->lpVtbl->Release(value->punkVal);
  if (value->vt == (VT_ARRAY | VT_VARIANT) && value->parray) {
    for (k = 0; k < value->parray->cElements; ++k) VariantClear(&value->parray->pvData[k]);
    free(value->parray->pvData);
    free(value->parray);
  }
  VariantInit(value);
}

/* A list of empty values; NULL when memory is short. */
static inline SAFEARRAY* SafeArrayCreateVector(int32_t lowest, uint32_t count) {
  SAFEARRAY* const array = (SAFEARRAY*)malloc(sizeof(SAFEARRAY));
  if (!array) return NULL;
  array->cElements = count;
  array->lLbound = lowest;
  array->pvData = (VARIANT*)calloc(count ? count : 1, sizeof(VARIANT));
  if (array->pvData) return array;
  free(array);
  return NULL;
}

/* ---- exports */

/* The class object of a class, by its id. */
typedef HRESULT DllGetClassObjectFunction(const GUID* classId, const GUID* interfaceId, void** object);
/* S_OK when no object and no lock is left, S_FALSE otherwise. */
typedef HRESULT DllCanUnloadNowFunction(void);
/* Enter the names and ids of the classes in the settings of the machine, and remove them. */
typedef HRESULT DllRegisterServerFunction(void);
typedef HRESULT DllUnregisterServerFunction(void);

/* ---- helpers over the exports and interfaces */

/* A new object of the class with the id. */
static inline HRESULT OndrelCreateInstance(DllGetClassObjectFunction* getClassObject, const GUID* classId,
                                           IDispatch** object) {
  IClassFactory* factory = NULL;
  HRESULT status = getClassObject(classId, &IID_IClassFactory, (void**)&factory);
  *object = NULL;
  if (status < 0) return status;
  status = factory->lpVtbl->CreateInstance(factory, NULL, &IID_IDispatch, (void**)object);
  factory->lpVtbl->Release(factory);
  return status;
}

/* Calls the member with arguments from last to first. `result` and `error` may be NULL. */
static inline HRESULT OndrelInvoke(IDispatch* object, const OLECHAR* member, uint16_t flags,
                                   VARIANT* arguments, uint32_t count, VARIANT* result, EXCEPINFO* error) {
  OLECHAR* name = (OLECHAR*)member;
  DISPID put = DISPID_PROPERTYPUT;
  DISPID id = DISPID_UNKNOWN;
  DISPPARAMS parameters = {arguments, NULL, count, 0};
  const HRESULT status = object->lpVtbl->GetIDsOfNames(object, &IID_IUnknown, &name, 1, 0, &id);
  if (status < 0) return status;
  if (flags & (DISPATCH_PROPERTYPUT | DISPATCH_PROPERTYPUTREF)) {
    parameters.rgdispidNamedArgs = &put;
    parameters.cNamedArgs = 1;
  }
  return object->lpVtbl->Invoke(object, id, &IID_IUnknown, 0, flags, &parameters, result, error, NULL);
}

/* A new object of a registered class, by its name. */
static inline HRESULT OndrelCreateObject(DllGetClassObjectFunction* getClassObject, const OLECHAR* name,
                                         IDispatch** object) {
  IDispatch* directory = NULL;
  VARIANT argument, result;
  HRESULT status = OndrelCreateInstance(getClassObject, &LIBID_OndrelCorpComponents, &directory);
  *object = NULL;
  if (status < 0) return status;
  VariantInit(&argument);
  VariantInit(&result);
  argument.vt = VT_BSTR;
  argument.bstrVal = SysAllocString(name);
  status = OndrelInvoke(directory, u"CreateObject", DISPATCH_METHOD, &argument, 1, &result, NULL);
  VariantClear(&argument);
  directory->lpVtbl->Release(directory);
  if (status >= 0) *object = result.pdispVal;
  return status;
}

#ifdef __cplusplus
}
#endif

/* NOLINTEND */

#endif
