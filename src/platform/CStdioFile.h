#pragma once
// Files with a buffer: lines of text, and those who want a FILE*.

#include "platform/CFile.h"

#include <cstdio>

/// A file over a FILE*, for lines of text and for libraries that read or write through one. Failures as in CFile.
///
/// Texts are written as UTF-8. They are read as UTF-8 when the line is well formed, else as code page 1252; a signature
/// at the start of the file is passed over.
class LUMBRA_API CStdioFile : public CFile {
  public:
    CStdioFile() = default;
    /// Takes over an open stream, and closes it at the end.
    explicit CStdioFile(std::FILE* fichero) : m_pStream(fichero) {}
    CStdioFile(LPCWSTR nombre, UINT modo);
    ~CStdioFile() override;

    /// As CFile's. Without typeBinary it is a file of text: a carriage return before a line end isn't part of the line.
    BOOL Open(LPCWSTR nombre, UINT modo) override;
    bool IsOpen() const override { return m_pStream != nullptr; }
    bool Close() override;
    /// The same as Close: what is in the buffer gets written.
    void Abort() override { Close(); }

    size_t Read(void* datos, size_t n) override;
    bool Write(const void* datos, size_t n) override;
    bool Flush() override;
    ULONGLONG Seek(LONGLONG distancia, UINT desde) override;
    ULONGLONG GetPosition() const override;
    ULONGLONG GetLength() const override;
    bool SetLength(ULONGLONG bytes) override;
    /// Not possible with a buffer: null, ERROR_NOT_SUPPORTED.
    CFile* Duplicate() const override;

    /// Reads a line, without its end. False at the end of the file.
    BOOL ReadString(CString& linea);
    /// Writes a text as it is; a line end is the caller's to write.
    bool WriteString(LPCWSTR texto);

    /// The stream, for libraries that want one; null when the file isn't open. Its owner is this object.
    std::FILE* m_pStream = nullptr;

  private:
    enum class Ultima { Nada, Lectura, Escritura };
    void Cambia(Ultima ahora);

    bool m_bTexto = false;
    Ultima m_Ultima = Ultima::Nada;
};
