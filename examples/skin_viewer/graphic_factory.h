// The viewer's graphic factory: page scripts are plain text, images are decoded by the system.
//
//     # What is on.
//     image 20 20 banner.gif
//     text 40 110 26 f2a541 Tonight
//
// Each line places one element at x and y: an image file, or a text with its height and colour.
// Texts are shown in the user's language where its directory has a file "words" that knows them:
//
//     Tonight = Heute Abend
#pragma once

#include <unknwn.h>
#include <windows.h>

#include <string>
#include <vector>

struct PageElement {
    enum class Kind { Image, Text };

    Kind kind = Kind::Image;
    int x = 0;
    int y = 0;
    int height = 0;
    COLORREF color = 0;
    /// The words of a text, the file name of an image.
    std::string text;
    /// The words in the user's language.
    std::string shown;
};

/// What the graphic factory hands out as a script.
MIDL_INTERFACE("10f2c3d1-d1da-467a-afc7-38e9c2827a97")
IPageScript : public IUnknown {
    virtual const std::vector<PageElement>& STDMETHODCALLTYPE Elements() = 0;
};
__CRT_UUID_DECL(IPageScript, 0x10f2c3d1, 0xd1da, 0x467a, 0xaf, 0xc7, 0x38, 0xe9, 0xc2, 0x82, 0x7a,
                0x97)

/// Makes the graphic factory's class known to COM in this process while it lives.
class GraphicFactoryRegistration {
 public:
    GraphicFactoryRegistration();
    ~GraphicFactoryRegistration();
    GraphicFactoryRegistration(const GraphicFactoryRegistration&) = delete;
    GraphicFactoryRegistration& operator=(const GraphicFactoryRegistration&) = delete;

 private:
    DWORD cookie_ = 0;
};
