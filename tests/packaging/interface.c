/* What callers of the shared library compile into themselves: functions and shapes of ondrel_component.h. Its types
 * are compared with those of the last version, which component.abi holds. */
#include <ondrel_component.h>

DllGetClassObjectFunction* getClassObject;
DllCanUnloadNowFunction* canUnloadNow;
DllRegisterServerFunction* registerServer;
DllUnregisterServerFunction* unregisterServer;
IUnknown* unknown;
IClassFactory* factory;
IDispatch* dispatch;
DISPPARAMS parameters;
EXCEPINFO failure;
VARIANT value;
SAFEARRAY list;
