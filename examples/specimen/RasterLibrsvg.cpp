// examples/specimen/RasterLibrsvg.cpp: librsvg draws the document, if it is installed.
//
// It brings seventy libraries along, so it is opened when a picture is asked for, and never closed:
// its libraries don't bear that.
#include "Raster.h"

#include <dlfcn.h>

#include <memory>
#include <new>

namespace specimen
{
namespace
{
constexpr char LIBRARY[] = "librsvg-2.so.2";
constexpr int FORMAT_ARGB32 = 0;
constexpr int SUCCESS = 0;
constexpr unsigned LARGEST_SIDE = 32767;
constexpr double MOST_DOTS = 64e6;

struct Rectangle
{
    double x, y, width, height;
};

// Its functions, and those of the libraries that it stands on.
struct Librsvg
{
    void* (*rsvg_handle_new_from_data)(const unsigned char* data, std::size_t size, void** error);
    int (*rsvg_handle_render_document)(void* handle, void* context, const Rectangle* place,
                                       void** error);
    void (*g_object_unref)(void* object);
    void (*g_error_free)(void* error);
    void* (*cairo_image_surface_create)(int format, int width, int height);
    void (*cairo_surface_destroy)(void* surface);
    void* (*cairo_create)(void* surface);
    void (*cairo_destroy)(void* context);
    int (*cairo_surface_write_to_png_stream)(void* surface,
                                             int (*write)(void* place, const unsigned char* data,
                                                          unsigned size),
                                             void* place);

    bool Open()
    {
        void* const library = dlopen(LIBRARY, RTLD_NOW | RTLD_LOCAL);
        return library && Find(library, "rsvg_handle_new_from_data", rsvg_handle_new_from_data) &&
               Find(library, "rsvg_handle_render_document", rsvg_handle_render_document) &&
               Find(library, "g_object_unref", g_object_unref) &&
               Find(library, "g_error_free", g_error_free) &&
               Find(library, "cairo_image_surface_create", cairo_image_surface_create) &&
               Find(library, "cairo_surface_destroy", cairo_surface_destroy) &&
               Find(library, "cairo_create", cairo_create) &&
               Find(library, "cairo_destroy", cairo_destroy) &&
               Find(library, "cairo_surface_write_to_png_stream",
                    cairo_surface_write_to_png_stream);
    }

private:
    template <class Function>
    static bool Find(void* library, const char* name, Function*& function)
    {
        function = reinterpret_cast<Function*>(dlsym(library, name));
        return function != nullptr;
    }
};

using Object = std::unique_ptr<void, void (*)(void*)>;

int Take(void* place, const unsigned char* data, unsigned size)
{
    constexpr int noMemory = 1;
    try {
        static_cast<std::string*>(place)->append(reinterpret_cast<const char*>(data), size);
    } catch (const std::bad_alloc&) {
        return noMemory;
    }
    return SUCCESS;
}

bool Render(const Librsvg& rsvg, const Picture& picture, std::string* png)
{
    void* error = nullptr;
    const Object document(
        rsvg.rsvg_handle_new_from_data(reinterpret_cast<const unsigned char*>(picture.svg.data()),
                                       picture.svg.size(), &error),
        rsvg.g_object_unref);
    const Object surface(rsvg.cairo_image_surface_create(FORMAT_ARGB32,
                                                         static_cast<int>(picture.width),
                                                         static_cast<int>(picture.height)),
                         rsvg.cairo_surface_destroy);
    const Object context(rsvg.cairo_create(surface.get()), rsvg.cairo_destroy);
    const Rectangle place = {0, 0, static_cast<double>(picture.width),
                             static_cast<double>(picture.height)};
    const bool isDrawn =
        document && rsvg.rsvg_handle_render_document(document.get(), context.get(), &place, &error);
    if (error)
        rsvg.g_error_free(error);
    // A surface that couldn't be had fails here.
    return isDrawn && rsvg.cairo_surface_write_to_png_stream(surface.get(), Take, png) == SUCCESS;
}
} // namespace

bool MakePng(const Picture& picture, std::string* png, std::string* reason)
{
    Librsvg rsvg;
    if (picture.width > LARGEST_SIDE || picture.height > LARGEST_SIDE ||
        static_cast<double>(picture.width) * picture.height > MOST_DOTS)
        *reason = "a picture of " + std::to_string(picture.width) + " by " +
                  std::to_string(picture.height) + " dots is too large; tell fewer sets or sizes";
    else if (!rsvg.Open())
        *reason = std::string(LIBRARY) + " isn't there (Debian: librsvg2-2), which draws pictures "
                                         "in dots; a name that ends in .svg gets a document";
    else if (!Render(rsvg, picture, png))
        *reason = "librsvg can't draw it";
    return reason->empty();
}
} // namespace specimen
