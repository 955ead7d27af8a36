#include "EscenaImagen.h"

int EscenaImagen::CargarImagen(Vertiz::IRaster*, Vertiz::CDataImagen&, const CDataCargarImagen&, const CString& carpeta,
                               Vertiz::CNivelMensajes nivel) {
    if (m_bCancelada || m_nResultado == 0) return m_nResultado;
    const Teselado teselado{1, 2};
    m_Texturas.push_back(teselado.Registro());
    CString nombre;
    nombre.Format(L"cortada%d.tmp", int(m_Texturas.size()));
    auto* fichero = new CFile(JuntaRuta(carpeta, nombre), CFile::modeCreate | CFile::modeReadWrite);
    const std::string bytes = teselado.Fichero();
    fichero->Write(bytes.data(), bytes.size());
    return CargarImagen(fichero, unsigned(m_Texturas.size() - 1), nivel);
}

bool EscenaImagen::SetNumFilasCols(int& filasTextura, int& colsTextura, int filas, int cols, CDataTexturas& r) {
    const bool cambiado = CEscenaMDT::SetNumFilasCols(filasTextura, colsTextura, filas, cols, r);
    if (m_nSobra == 0) return cambiado;
    r.m_nAltoUtil -= m_nSobra, r.m_nAnchoUtil -= m_nSobra;
    if (r.m_nAltoUtil < 1 || r.m_nAnchoUtil < 1) return cambiado;
    r.m_nNumFilas = (filas + r.m_nAltoUtil - 1) / r.m_nAltoUtil;
    r.m_nNumCols = (cols + r.m_nAnchoUtil - 1) / r.m_nAnchoUtil;
    return cambiado;
}

Teselado Teselado::Liso() const {
    Teselado t = *this;
    t.tono = [t](int l, int fila, int col) {
        return t.TonoLiso(l, fila / std::max(t.altoUtil >> l, 1), col / std::max(t.anchoUtil >> l, 1));
    };
    return t;
}

CDataTexturas Teselado::Registro() const {
    CDataTexturas r;
    r.m_bPiramidales = piramide;
    r.m_nNumFilas = filas, r.m_nNumCols = cols;
    r.m_nAnchoTextura = ancho, r.m_nAltoTextura = alto;
    r.m_nAnchoUtil = anchoUtil, r.m_nAltoUtil = altoUtil;
    r.m_nAnchoImagen = cols * anchoUtil, r.m_nAltoImagen = filas * altoUtil;
    r.m_nSizeTextura = (ancho * 24 + 31) / 32 * 4 * alto;
    r.m_nSizeNivel0 = std::int64_t(r.m_nSizeTextura) * filas * cols;
    return r;
}

std::string Teselado::Fichero() const {
    std::string bytes;
    for (int l = 0, w = ancho, h = alto; w >= 1 || h >= 1; ++l, w /= 2, h /= 2) {
        const int wu = std::min(std::max(anchoUtil >> l, 1), w), hu = std::min(std::max(altoUtil >> l, 1), h);
        for (int t = 0; t < filas; ++t)
            for (int u = 0; u < cols; ++u) {
                std::string ranura;
                for (int i = 0; i < h; ++i)
                    for (int j = 0; j < w; ++j)
                        for (const std::uint8_t b : tono(l, t * hu + std::min(i, hu - 1), u * wu + std::min(j, wu - 1)))
                            ranura += char(b);
                while (ranura.size() < std::size_t((w * 24 + 31) / 32 * 4 * h))
                    ranura += char(0);
                bytes += ranura;
            }
        if (!piramide) break;
    }
    return bytes;
}

CDataTexturas Teselado::Escribe(const CarpetaTemporal& carpeta, const std::string& nombre) const {
    CDataTexturas r = Registro();
    r.m_sNombreFichero = Ancha(carpeta.Escribe(nombre, Fichero()));
    return r;
}

void Imagenes::TearDown() {
    if (!m_escena.MakeCurrent(nullptr)) return;
    const GLenum error = glGetError();
    EXPECT_EQ(error, GLenum(GL_NO_ERROR)) << "the test left an OpenGL error behind: " << NombreGL(error);
    wglMakeCurrent(nullptr, nullptr);
}

std::vector<std::uint8_t> Imagenes::Lee(GLuint nombre, int nivel) {
    EXPECT_TRUE(m_escena.MakeCurrent(nullptr));
    GLint ancho = 0, alto = 0;
    glBindTexture(GL_TEXTURE_2D, nombre);
    glGetTexLevelParameteriv(GL_TEXTURE_2D, nivel, GL_TEXTURE_WIDTH, &ancho);
    glGetTexLevelParameteriv(GL_TEXTURE_2D, nivel, GL_TEXTURE_HEIGHT, &alto);
    std::vector<std::uint8_t> pixeles(std::size_t(ancho) * std::size_t(alto) * 3);
    glPixelStorei(GL_PACK_ALIGNMENT, 1);
    if (!pixeles.empty()) glGetTexImage(GL_TEXTURE_2D, nivel, GL_RGB, GL_UNSIGNED_BYTE, pixeles.data());
    wglMakeCurrent(nullptr, nullptr);
    return pixeles;
}
