// Bitmaps: pixels in memory behind a handle.

#include "platform/CBitmap.h"

#include "platform/CDC.h"
#include "platform/CabeceraDIB.h"
#include "platform/Objetos.h"

#include <cstdint>
#include <limits>
#include <new>

namespace plataforma {

Tabla<HBITMAP, Bitmap>& Bitmaps() {
    static auto& t = *new Tabla<HBITMAP, Bitmap>;
    return t;
}

std::shared_ptr<Bitmap> CreaBitmap(int ancho, int alto, int bits) {
    const std::string cual =
        std::to_string(ancho) + " x " + std::to_string(alto) + " pixels of " + std::to_string(bits) + " bits";
    if (ancho < 1 || alto < 1 || (bits != 24 && bits != 32)) {
        AnotaFallo("no bitmap has " + cual + ".");
        return nullptr;
    }
    const auto paso = static_cast<std::int64_t>(BytesDeFila(ancho, static_cast<unsigned>(bits)));
    // A limit of its own, since a system that promises memory freely ends the process when it is written.
    if (paso > std::numeric_limits<std::int32_t>::max() / alto) {
        AnotaFallo("a bitmap of " + cual + " is over the limit of 2 GiB.");
        return nullptr;
    }
    try {
        auto bitmap = std::make_shared<Bitmap>();
        bitmap->m_nAncho = ancho;
        bitmap->m_nAlto = alto;
        bitmap->m_nBits = bits;
        bitmap->m_nPaso = static_cast<int>(paso);
        bitmap->m_Pixeles.resize(static_cast<std::size_t>(paso * alto));
        return bitmap;
    } catch (const std::bad_alloc&) {
        AnotaFallo("there is no memory for a bitmap of " + cual + ".");
        return nullptr;
    }
}

}  // namespace plataforma

using namespace plataforma;

CBitmap::CBitmap() = default;

CBitmap::~CBitmap() {
    DeleteObject();
}

BOOL CBitmap::CreateCompatibleBitmap(CDC* dc, int ancho, int alto) {
    const int bits = dc ? dc->GetDeviceCaps(BITSPIXEL) : 0;
    if (bits == 0) return AnotaFallo("unknown device context.");
    return CreateBitmap(ancho, alto, static_cast<UINT>(bits));
}

BOOL CBitmap::CreateBitmap(int ancho, int alto, UINT bits) {
    if (m_hObject) return AnotaFallo("the object has a bitmap already.");
    auto bitmap = CreaBitmap(ancho, alto, static_cast<int>(bits));
    return bitmap && Attach(Bitmaps().Inserta(std::move(bitmap)));
}

BOOL CBitmap::Attach(HBITMAP h) {
    const auto bitmap = Bitmaps().Busca(h);
    if (m_hObject || !bitmap) return FALSE;
    std::lock_guard cierre(CerrojoContextos());
    if (bitmap->m_pClase) return FALSE;
    bitmap->m_pClase = this;
    m_hObject = h;
    return TRUE;
}

HBITMAP CBitmap::Detach() {
    const HBITMAP h = m_hObject;
    if (const auto bitmap = Bitmaps().Busca(h)) {
        std::lock_guard cierre(CerrojoContextos());
        bitmap->m_pClase = nullptr;
    }
    m_hObject = nullptr;
    return h;
}

BOOL CBitmap::DeleteObject() {
    return ::DeleteObject(Detach());
}

int CBitmap::GetBitmap(BITMAP* datos) const {
    const auto bitmap = Bitmaps().Busca(m_hObject);
    if (!bitmap || !datos) return 0;
    *datos = {0,
              bitmap->m_nAncho,
              bitmap->m_nAlto,
              bitmap->m_nPaso,
              1,
              static_cast<WORD>(bitmap->m_nBits),
              bitmap->m_Pixeles.data()};
    return sizeof *datos;
}

HBITMAP CreateDIBSection(HDC, const BITMAPINFO* info, UINT, void** bits, HANDLE, DWORD) {
    if (bits) *bits = nullptr;
    if (!info || info->bmiHeader.biSize != sizeof(BITMAPINFOHEADER) || info->bmiHeader.biPlanes != 1 ||
        info->bmiHeader.biCompression != BI_RGB) {
        AnotaFallo("the header asks for a kind of bitmap that isn't offered.");
        return nullptr;
    }
    auto bitmap = CreaBitmap(info->bmiHeader.biWidth, info->bmiHeader.biHeight, info->bmiHeader.biBitCount);
    if (!bitmap) return nullptr;
    if (bits) *bits = bitmap->m_Pixeles.data();
    return Bitmaps().Inserta(std::move(bitmap));
}

BOOL DeleteObject(HBITMAP h) {
    return Bitmaps().Saca(h) != nullptr;
}
