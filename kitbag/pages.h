// The page factory: the application's skinned user-interface pages, created from script files.
//
//     #include <comutil.h>
//     #include <kitbag/pages.h>
//     #include <wrl/client.h>
//
//     HRESULT ShowPages(IKivUserInterface* userInterface) {
//         Microsoft::WRL::ComPtr<IKivPageFactory> factory;
//         if (!KB_CreateKivPageFactory(&factory)) return E_FAIL;
//         factory->AddPage(_bstr_t(L"Main.page"), nullptr);
//         return factory->CreatePage(-1, userInterface, nullptr, nullptr);  // all pages
//     }
//
// The interfaces are COM interfaces: what a function hands out carries a reference for the caller,
// pointers that are handed in are borrowed for the call unless it says that they are kept. Texts
// are BSTRs up to their first zero; they pass through the ANSI code page. No exception leaves an
// operation; where memory runs out it answers E_OUTOFMEMORY. An out pointer that is null gives
// E_POINTER unless it may be null; operations that fail leave null in it. A caller in another
// apartment gives every out pointer: the system's proxies refuse a null one.
//
// IKivPageFactory
//
// Belongs to the apartment of the thread that created it. Its own failures are told by their codes
// alone: an operation that can fail first clears the thread's error object. One that the
// application leaves in a call that the factory makes reaches the caller of the factory.
//
// At its end it lets go of all that it keeps. What ends with it may call it once more, and finds it
// without pages and objects.
//
// It is an automation object too: once the library is registered, scripts create a
// "Kitbag.KivPageFactory" and get the last argument as the result.
//
//     Set factory = CreateObject("Kitbag.KivPageFactory")
//     index = factory.AddPage("Main.page")
//
// They can call everything but RegisterObject and GetRegisteredObject, as they have no identifiers
// to hand in; CreatePage needs a user interface of the application's.
//
//   SetDefaultObject(object)
//       Keeps the object that GetRegisteredObject answers for unknown identifiers; null for none.
//   RegisterObject(identifier, object), GetRegisteredObject(identifier, &object)
//       Keeps an object under an identifier; null takes the registration back. Asking for it gives
//       the default object, possibly null, where nothing is registered.
//   AddPage(name, &index)
//       Appends a page; the index, from 0, may be unwanted. Its file is the string value of that
//       name in the settings section "Skins", or else the name itself. A null or empty name gives
//       E_INVALIDARG.
//   GetPageCount(&count)
//   CreatePage(index, userInterface, owner, &page)
//       Has the user interface create one page, or with any negative index all pages in order, and
//       keeps what it answers in place of an earlier page: null, too, where it answers success
//       without a page. Without an owner the pages get a new one of the library. One page is also
//       handed to the caller who wants it, and the result is the user interface's; all pages go on
//       after a failure, and the result is that of the last failure or S_OK. Null for the user
//       interface gives E_POINTER, a factory without pages E_FAIL, an index past the last page
//       E_INVALIDARG.
//   GetPage(index, &page)
//       The page that was created, null before; E_INVALIDARG for an index without a page name.
//   GetScript(index, &script), SetScript(index, script)
//       Loads and saves a page's script through the graphic factory, whose result they answer. A
//       file name with ':' or a backslash is used as it is, any other lies in the skin directory;
//       where that is unknown, it is used as it is, too. Loading asks the application's locale
//       library "Lingrel.dll" for the language's directories. E_INVALIDARG for an index without a
//       page name, E_POINTER for saving null, E_FAIL without a graphic factory.
//   GetScriptImage(unused, file, &image), GetScriptImage2(unused, file, &image)
//       Loads an image through the graphic factory from the first directory where it can: the
//       sub-language's and the language's, both as GetScript last learned them, then the skin's.
//       No other directory is tried. E_FAIL where none has it. The two are the same; both stay, as
//       components are built with either.
//   SetResourceModule(module), LoadResourceString(unused, identifier, &text)
//       A string of the module's resources, of the library's own before a module was set or after
//       null, cut to 511 bytes; E_FAIL where it does not exist.
//
// IKivUserInterface: implemented by the application
//
//   CreatePage(owner, factory, index, &page)
//       Creates the page of that index. It may call the factory, and may keep references.
//
// IKivGraphicFactory: implemented by the application, which registers the class KivGraphicFactory
//
//   LoadScript(file, directory, languageDirectory, subLanguageDirectory, &script)
//       Loads a script from its full path; the directory is that path up to its last backslash. A
//       language directory that is not known is empty.
//   SaveScript(file, script)
//   LoadImageFile(path, &image)
//
// IKivPageOwner has no operations of its own.
#pragma once

#include <kitbag/frame/export.h>
#include <kitbag/pages/interfaces.h>
#include <windows.h>

/// Creates a page factory; no registration is needed. False, with null in the pointer, on failure.
///
/// The thread should have initialised COM as a single-threaded apartment: the call then leaves the
/// count of initialisations as it was. On any other thread COM stays initialised for good.
KITBAG_PLAIN bool KB_CreateKivPageFactory(IKivPageFactory** factory);

/// Creates the application's graphic factory, wherever its class runs; the same for threads.
KITBAG_PLAIN bool KB_CreateGraphicFactory(IKivGraphicFactory** factory);
