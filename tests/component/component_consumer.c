/*
 * A host in C: component_consumer LIBRARY CONNECTION. Loads the component, creates every class by id and by
 * name, and sells four shirts. Says what differs from what is expected; the exit status is the number of that.
 */
#include <dlfcn.h>
#include <math.h>
#include <stdio.h>

#include "component/ondrel_component.h"

static int failures = 0;

#define CHECK(condition)                                                                    \
  do {                                                                                      \
    if (!(condition)) {                                                                     \
      ++failures;                                                                           \
      fprintf(stderr, "component_consumer.c:%d: %s does not hold\n", __LINE__, #condition); \
    }                                                                                       \
  } while (0)

static DllGetClassObjectFunction* getClassObject;
static DllCanUnloadNowFunction* canUnloadNow;
static DllRegisterServerFunction* registerServer;
static DllUnregisterServerFunction* unregisterServer;

struct Class {
  const OLECHAR* name;
  const OLECHAR* member;
  GUID classId, interfaceId;
};

/* clang-format off */
static const struct Class kClasses[] = {
    {u"TicketTag", u"TagNumber",
     {0xFFCE1536, 0xD0A4, 0x4C89, {0xA8, 0x22, 0xF3, 0x54, 0xF6, 0x88, 0xFC, 0x76}},
     {0xEA7AFCD0, 0xC1D1, 0x4834, {0xB9, 0x9A, 0x46, 0x56, 0x70, 0xB0, 0xB1, 0xE3}}},
    {u"HelperFunctions", u"ASPStrConv",
     {0xE7F83A2F, 0x028A, 0x4635, {0xBA, 0x66, 0x47, 0xD1, 0x02, 0x51, 0x6D, 0x77}},
     {0xA32439C6, 0xA525, 0x4A55, {0x8C, 0x42, 0x8C, 0xF8, 0x33, 0x0A, 0xD0, 0xBA}}},
    {u"garmentSearch", u"lineItems",
     {0x70CBB24E, 0x5A32, 0x47BB, {0xAD, 0x18, 0x5C, 0x5A, 0xF4, 0x1B, 0x18, 0x0F}},
     {0x7CDAAA75, 0xA3D0, 0x4677, {0xB5, 0x5A, 0x0B, 0x0D, 0x0A, 0xD2, 0xDA, 0x31}}},
    {u"pickupInvoice", u"ticketNumber",
     {0xE9E3BC6D, 0x4382, 0x4A3B, {0xA4, 0x5E, 0x17, 0x06, 0x2D, 0x12, 0x53, 0xD4}},
     {0x91B5D5D5, 0x5489, 0x4C98, {0xA9, 0x1E, 0xBB, 0xBB, 0x1A, 0x2E, 0x79, 0xE2}}},
    {u"quickInvoice", u"lineItems",
     {0x75391F75, 0xF69D, 0x474D, {0xAF, 0x6A, 0x53, 0x5D, 0x1F, 0xB1, 0x8E, 0xEA}},
     {0x98DC44DD, 0x4515, 0x45D1, {0x88, 0x34, 0x5A, 0xA2, 0x3C, 0xC0, 0x23, 0x07}}},
    {u"pickup", u"addPayment",
     {0xB1E3994D, 0x4D0C, 0x4A3C, {0xBB, 0xC9, 0x99, 0x71, 0x74, 0x36, 0x72, 0x44}},
     {0xA2BD898E, 0x2E2E, 0x470D, {0xA1, 0x66, 0xE3, 0xAB, 0x28, 0xFC, 0x94, 0x7E}}},
    {u"invoice", u"addItem",
     {0x1FDC7BD4, 0xF46D, 0x47B7, {0xBD, 0x99, 0xFE, 0x04, 0x48, 0x02, 0x27, 0xD2}},
     {0xF86AA050, 0x6259, 0x424F, {0x98, 0xF8, 0x90, 0x1F, 0xF2, 0xC5, 0x80, 0x5D}}},
    {u"creditCardProcessing", u"VerifyCreditCard",
     {0x2430B43B, 0x7FED, 0x4FFA, {0x9D, 0x69, 0xF3, 0xB2, 0xA8, 0x96, 0x49, 0x90}},
     {0x80F7D53A, 0x1087, 0x460E, {0xB4, 0xE5, 0xD0, 0x00, 0x81, 0xBC, 0x22, 0x6B}}},
    {u"creditCardFields", u"accountnumber",
     {0xECA1A443, 0xACB5, 0x42B2, {0x9D, 0x86, 0x48, 0x69, 0x2B, 0xB1, 0x06, 0x5F}},
     {0xDC5C80E6, 0x72E4, 0x43F4, {0x8D, 0xBC, 0xC5, 0x23, 0x3A, 0x68, 0x04, 0xD3}}},
    {u"MarketingLetters", u"openMLetter",
     {0x7214C415, 0x95EA, 0x449F, {0xB6, 0xA1, 0x01, 0xB5, 0xFC, 0x39, 0x16, 0xD2}},
     {0xA1B32D4F, 0xB92E, 0x4B25, {0xBE, 0xC4, 0x8D, 0xF9, 0x30, 0x4D, 0xD2, 0x61}}},
    {u"claimReceiptFields", u"identification",
     {0xE388951C, 0x2501, 0x4745, {0xBC, 0xBF, 0x59, 0xEC, 0x01, 0xC8, 0xC8, 0x5F}},
     {0x2A0684EF, 0x5B39, 0x43A3, {0xB5, 0x9B, 0x89, 0x0C, 0x34, 0xB8, 0x50, 0x9F}}},
    {u"DbTool", u"GetDbOptions",
     {0xB31809D9, 0xBA58, 0x4DBB, {0x88, 0x42, 0xC8, 0xA1, 0x4E, 0x8A, 0x5C, 0x95}},
     {0x1A3B946F, 0x02B5, 0x444A, {0x8D, 0x6F, 0x44, 0x4E, 0x34, 0xAA, 0x2F, 0x48}}},
    {u"DbOption", u"ConnectionString",
     {0x5E18FB3F, 0x8393, 0x406C, {0xA2, 0x54, 0xDA, 0x4C, 0xBF, 0x2B, 0x28, 0xFF}},
     {0x1B80340B, 0xB521, 0x4782, {0xA0, 0x99, 0x56, 0x8D, 0x66, 0xF3, 0x42, 0xCF}}},
};
/* clang-format on */
enum { kClassCount = sizeof kClasses / sizeof kClasses[0] };

/* ---- values */

static VARIANT number(int32_t value) {
  VARIANT result;
  VariantInit(&result);
  result.vt = VT_I4;
  result.lVal = value;
  return result;
}

static VARIANT text(const OLECHAR* value) {
  VARIANT result;
  VariantInit(&result);
  result.vt = VT_BSTR;
  result.bstrVal = SysAllocString(value);
  return result;
}

static VARIANT reference(VARTYPE type, void* place) {
  VARIANT result;
  VariantInit(&result);
  result.vt = (VARTYPE)(VT_BYREF | type);
  result.byref = place;
  return result;
}

static VARIANT omitted(void) {
  VARIANT result = number(DISP_E_PARAMNOTFOUND);
  result.vt = VT_ERROR;
  return result;
}

static int isText(BSTR value, const OLECHAR* expected) {
  uint32_t k = 0;
  for (; k < SysStringLen(value); ++k)
    if (value[k] != expected[k]) return 0;
  return !expected[k];
}

static int contains(BSTR value, const OLECHAR* part) {
  for (uint32_t from = 0; from < SysStringLen(value); ++from) {
    uint32_t k = 0;
    while (part[k] && value[from + k] == part[k]) ++k;
    if (!part[k]) return 1;
  }
  return 0;
}

/* ---- calls; the arguments are given from last to first and cleared */

static VARIANT call(IDispatch* object, const OLECHAR* member, uint16_t flags, VARIANT* arguments,
                    uint32_t count) {
  VARIANT result;
  EXCEPINFO error;
  HRESULT status;
  VariantInit(&result);
  memset(&error, 0, sizeof error);
  status = OndrelInvoke(object, member, flags, arguments, count, &result, &error);
  if (status < 0) {
    ++failures;
    fprintf(stderr, "a call failed with 0x%08X, error %d: ", (unsigned)status,
            (int)OndrelErrorNumber(error.scode));
    for (uint32_t k = 0; k < SysStringLen(error.bstrDescription); ++k)
      fputc(error.bstrDescription[k], stderr);
    fputc('\n', stderr);
    SysFreeString(error.bstrSource);
    SysFreeString(error.bstrDescription);
  }
  for (uint32_t k = 0; k < count; ++k) VariantClear(&arguments[k]);
  return result;
}

static void put(IDispatch* object, const OLECHAR* member, VARIANT value) {
  call(object, member, DISPATCH_PROPERTYPUT, &value, 1);
}

static VARIANT get(IDispatch* object, const OLECHAR* member) {
  return call(object, member, DISPATCH_PROPERTYGET, NULL, 0);
}

static void run(IDispatch* object, const OLECHAR* member) {
  VARIANT result = call(object, member, DISPATCH_METHOD, NULL, 0);
  VariantClear(&result);
}

/* ---- classes */

static void checkById(const struct Class* row) {
  IClassFactory* factory = NULL;
  IDispatch *object = NULL, *same = NULL;
  IUnknown* unknown = NULL;
  OLECHAR* name = (OLECHAR*)row->member;
  DISPID id = 0, idAgain = 0;
  CHECK(getClassObject(&row->classId, &IID_IDispatch, (void**)&factory) == E_NOINTERFACE && !factory);
  CHECK(getClassObject(&row->classId, &IID_IClassFactory, (void**)&factory) == S_OK);
  CHECK(factory->lpVtbl->CreateInstance(factory, (IUnknown*)factory, &IID_IDispatch, (void**)&object) ==
        CLASS_E_NOAGGREGATION);
  CHECK(factory->lpVtbl->CreateInstance(factory, NULL, &row->interfaceId, (void**)&object) == S_OK);
  CHECK(factory->lpVtbl->Release(factory) == 0);
  CHECK(canUnloadNow() == S_FALSE);
  CHECK(object->lpVtbl->QueryInterface(object, &IID_IDispatch, (void**)&same) == S_OK && same == object);
  CHECK(object->lpVtbl->QueryInterface(object, &IID_IUnknown, (void**)&unknown) == S_OK);
  CHECK((void*)unknown == (void*)object);
  CHECK(object->lpVtbl->GetIDsOfNames(object, &IID_IUnknown, &name, 1, 0, &id) == S_OK && id > 0);
  CHECK(object->lpVtbl->GetIDsOfNames(same, &IID_IUnknown, &name, 1, 0, &idAgain) == S_OK && id == idAgain);
  CHECK(object->lpVtbl->QueryInterface(object, &row->classId, (void**)&same) == E_NOINTERFACE);
  CHECK(object->lpVtbl->AddRef(object) == 4);
  CHECK(object->lpVtbl->Release(object) == 3);
  CHECK(object->lpVtbl->Release(object) == 2);
  CHECK(unknown->lpVtbl->Release(unknown) == 1);
  CHECK(object->lpVtbl->Release(object) == 0);
  CHECK(canUnloadNow() == S_OK);
}

static HRESULT createByName(const struct Class* row, IDispatch** object) {
  OLECHAR name[64] = u"OndrelCorpComponents.";
  uint32_t length = 0;
  while (name[length]) ++length;
  for (const OLECHAR* next = row->name; *next; ++next) name[length++] = *next;
  name[length] = 0;
  return OndrelCreateObject(getClassObject, name, object);
}

static void checkByName(const struct Class* row) {
  IDispatch *object = NULL, *same = NULL;
  CHECK(createByName(row, &object) == S_OK);
  if (!object) return;
  CHECK(object->lpVtbl->QueryInterface(object, &row->interfaceId, (void**)&same) == S_OK);
  if (same) same->lpVtbl->Release(same);
  CHECK(object->lpVtbl->Release(object) == 0);
}

static void checkClasses(void) {
  const GUID nobody = {1, 2, 3, {4, 5, 6, 7, 8, 9, 10, 11}};
  IDispatch* object = NULL;
  CHECK(OndrelCreateInstance(getClassObject, &nobody, &object) == CLASS_E_CLASSNOTAVAILABLE);
  CHECK(createByName(&kClasses[0], &object) == DISP_E_EXCEPTION);
  CHECK(registerServer() == S_OK);
  for (int k = 0; k < kClassCount; ++k) {
    IClassFactory* factory = NULL;
    CHECK(getClassObject(&kClasses[k].classId, &IID_IClassFactory, (void**)&factory) == S_OK);
    if (!factory) continue;
    factory->lpVtbl->Release(factory);
    checkById(&kClasses[k]);
    checkByName(&kClasses[k]);
  }
  CHECK(unregisterServer() == S_OK);
  CHECK(createByName(&kClasses[0], &object) == DISP_E_EXCEPTION);
  printf("%d classes by id and name\n", kClassCount);
}

/* ---- arguments by reference, errors, arrays */

/* ASPStrConv(convOption:=2, strIn:="ABC"), then without the text */
static void checkNamedArguments(IDispatch* helper) {
  OLECHAR name[] = u"ASPStrConv", option[] = u"CONVOPTION", given[] = u"strIn", other[] = u"nothing";
  OLECHAR *names[] = {name, option, given}, *wrong[] = {name, other};
  DISPID ids[3];
  VARIANT arguments[] = {number(2), text(u"ABC")}, result;
  DISPPARAMS parameters = {arguments, ids + 1, 2, 2};
  uint32_t missing = 99;
  CHECK(helper->lpVtbl->GetIDsOfNames(helper, &IID_IUnknown, wrong, 2, 0, ids) == DISP_E_UNKNOWNNAME);
  CHECK(helper->lpVtbl->GetIDsOfNames(helper, &IID_IUnknown, names, 3, 0, ids) == S_OK);
  CHECK(helper->lpVtbl->Invoke(helper, ids[0], &IID_IUnknown, 0, DISPATCH_METHOD, &parameters, &result, NULL,
                               NULL) == S_OK);
  CHECK(isText(result.bstrVal, u"abc"));
  VariantClear(&result);
  parameters.cArgs = parameters.cNamedArgs = 1;
  CHECK(helper->lpVtbl->Invoke(helper, ids[0], &IID_IUnknown, 0, DISPATCH_METHOD, &parameters, NULL, NULL,
                               &missing) == DISP_E_PARAMNOTOPTIONAL);
  CHECK(missing == 0);
  VariantClear(&arguments[1]);
}

static void checkArguments(void) {
  IDispatch *cards = NULL, *helper = NULL, *tool = NULL;
  VARIANT arguments[3], result, brand;
  BSTR message = SysAllocString(u"before");
  EXCEPINFO error;
  CHECK(OndrelCreateInstance(getClassObject, &kClasses[7].classId, &cards) == S_OK);
  VariantInit(&brand);
  arguments[2] = text(u"4111 1111 1111 1112");
  arguments[1] = reference(VT_VARIANT, &brand);
  arguments[0] = reference(VT_BSTR, &message);
  result = call(cards, u"verifycreditcard", DISPATCH_METHOD, arguments, 3);
  CHECK(result.vt == VT_BOOL && result.boolVal == VARIANT_FALSE);
  CHECK(brand.vt == VT_BSTR && SysStringLen(brand.bstrVal) > 0);
  CHECK(SysStringLen(message) > 0 && !isText(message, u"before"));
  VariantClear(&brand);
  SysFreeString(message);
  cards->lpVtbl->Release(cards);

  CHECK(OndrelCreateInstance(getClassObject, &kClasses[1].classId, &helper) == S_OK);
  arguments[2] = text(u"Zo\u00EB \U0001F600");
  arguments[1] = number(1);
  arguments[0] = omitted();
  result = call(helper, u"ASPStrConv", DISPATCH_METHOD | DISPATCH_PROPERTYGET, arguments, 3);
  CHECK(result.vt == VT_BSTR && isText(result.bstrVal, u"ZO\u00CB \U0001F600"));
  VariantClear(&result);
  arguments[1] = text(u"a");
  arguments[0] = number(0);
  memset(&error, 0, sizeof error);
  CHECK(OndrelInvoke(helper, u"ASPStrConv", DISPATCH_METHOD, arguments, 2, &result, &error) ==
        DISP_E_EXCEPTION);
  CHECK(OndrelErrorNumber(error.scode) == 5);
  CHECK(isText(error.bstrSource, u"HelperFunctions"));
  CHECK(contains(error.bstrDescription, u"Invalid procedure call"));
  SysFreeString(error.bstrSource);
  SysFreeString(error.bstrDescription);
  memset(&error, 0, sizeof error);
  CHECK(OndrelInvoke(helper, u"ASPStrConv", DISPATCH_METHOD, arguments, 1, NULL, &error) == DISP_E_EXCEPTION);
  CHECK(OndrelErrorNumber(error.scode) == 450);
  SysFreeString(error.bstrSource);
  SysFreeString(error.bstrDescription);
  VariantClear(&arguments[1]);
  checkNamedArguments(helper);
  CHECK(OndrelInvoke(helper, u"nothing", DISPATCH_METHOD, NULL, 0, NULL, NULL) == DISP_E_UNKNOWNNAME);
  CHECK(helper->lpVtbl->Invoke(helper, 1, &IID_IUnknown, 0, DISPATCH_METHOD, &(DISPPARAMS){0}, NULL, NULL,
                               NULL) == DISP_E_MEMBERNOTFOUND);
  helper->lpVtbl->Release(helper);

  CHECK(OndrelCreateInstance(getClassObject, &kClasses[11].classId, &tool) == S_OK);
  result = call(tool, u"GetDbOptions", DISPATCH_METHOD, NULL, 0);
  CHECK(result.vt == (VT_ARRAY | VT_VARIANT) && result.parray->cElements == 2);
  if (result.vt == (VT_ARRAY | VT_VARIANT)) {
    VARIANT name = get(result.parray->pvData[1].pdispVal, u"DbName");
    CHECK(isText(name.bstrVal, u"training"));
    VariantClear(&name);
  }
  VariantClear(&result);
  tool->lpVtbl->Release(tool);
}

/* ---- four shirts at 2.50 are 10.00; a fee of 0.10 for each hanger is not taxed, 6% of the rest are 0.60 */

static void checkSale(const char* connection) {
  IDispatch* invoice = NULL;
  VARIANT arguments[7], lines, again, result;
  int64_t shirts = 2, amount = 20000;
  OLECHAR wide[512] = {0};
  for (int k = 0; connection[k] && k < 511; ++k) wide[k] = (OLECHAR)(unsigned char)connection[k];
  CHECK(OndrelCreateInstance(getClassObject, &kClasses[6].classId, &invoice) == S_OK);
  put(invoice, u"DBConnectionString", text(wide));
  run(invoice, u"initInvoice");
  put(invoice, u"custSeqNumber", number(10));
  put(invoice, u"storeNumber", number(1));
  put(invoice, u"priceListId", number(1));
  put(invoice, u"isAdd", number(-1));
  put(invoice, u"addOrEdit", text(u"add"));
  put(invoice, u"routeNumber", number(-1));
  arguments[0] = number(1);
  result = call(invoice, u"setStoreDays", DISPATCH_METHOD, arguments, 1);
  VariantClear(&result);
  run(invoice, u"LoadDefaults");
  arguments[2] = number(201);
  arguments[1] = number(1);
  arguments[0] = number(4);
  result = call(invoice, u"addItem", DISPATCH_METHOD, arguments, 3);
  VariantClear(&result);
  arguments[0] = reference(VT_I8, &shirts);
  result = call(invoice, u"isDepartmentPresent", DISPATCH_METHOD, arguments, 1);
  CHECK(result.vt == VT_BOOL && result.boolVal == VARIANT_TRUE && shirts == 2);
  arguments[0] = reference(VT_CY, &amount);
  result = call(invoice, u"isDepartmentPresent", DISPATCH_METHOD, arguments, 1);
  CHECK(result.vt == VT_BOOL && result.boolVal == VARIANT_TRUE && amount == 20000);
  run(invoice, u"invoiceDone2");
  result = call(invoice, u"getInvoiceAmountToPay", DISPATCH_METHOD, NULL, 0);
  CHECK(result.vt == VT_R8 && fabs(result.dblVal - 11.00) < 1e-9);
  VariantClear(&result);

  lines = get(invoice, u"lineItems");
  again = get(invoice, u"lineItems");
  CHECK(lines.vt == VT_DISPATCH && lines.pdispVal == again.pdispVal);
  put(lines.pdispVal, u"Filter", text(u"itemType='IT'"));
  result = get(lines.pdispVal, u"RecordCount");
  CHECK(result.vt == VT_I4 && result.lVal == 1);
  arguments[0] = text(u"quantity");
  result = call(lines.pdispVal, u"Fields", DISPATCH_PROPERTYGET, arguments, 1);
  if (result.vt == VT_DISPATCH) {
    VARIANT quantity = get(result.pdispVal, u"Value");
    CHECK(quantity.vt == VT_I4 && quantity.lVal == 4);
  }
  VariantClear(&result);
  put(lines.pdispVal, u"Filter", number(0));
  put(invoice, u"lineItems", lines);
  VariantClear(&again);

  arguments[6] = text(u"add");
  arguments[5] = number(4);
  arguments[4] = number(3);
  arguments[3] = text(u"0");
  arguments[2] = text(u"Ann");
  arguments[1] = text(u"Fernhill");
  arguments[0] = number(-1);
  result = call(invoice, u"saveInvoice", DISPATCH_METHOD, arguments, 7);
  VariantClear(&result);
  result = get(invoice, u"ticketNo");
  CHECK(result.vt == VT_I4 && result.lVal > 0);
  printf("four shirts on ticket %d\n", (int)result.lVal);
  VariantClear(&result);
  CHECK(invoice->lpVtbl->Release(invoice) == 0);
}

int main(int argc, char** argv) {
  void* library;
  if (argc != 3 || !(library = dlopen(argv[1], RTLD_NOW | RTLD_LOCAL))) {
    fprintf(stderr, "component_consumer LIBRARY CONNECTION: %s\n", argc == 3 ? dlerror() : "usage");
    return 99;
  }
  *(void**)&getClassObject = dlsym(library, "DllGetClassObject");
  *(void**)&canUnloadNow = dlsym(library, "DllCanUnloadNow");
  *(void**)&registerServer = dlsym(library, "DllRegisterServer");
  *(void**)&unregisterServer = dlsym(library, "DllUnregisterServer");
  CHECK(canUnloadNow() == S_OK);
  checkClasses();
  checkArguments();
  checkSale(argv[2]);
  CHECK(canUnloadNow() == S_OK);
  CHECK(dlclose(library) == 0);
  return failures;
}
