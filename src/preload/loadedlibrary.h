#pragma once

namespace preload {

// A library that the process has loaded already, kept loaded while this object lives.
class LoadedLibrary
{
public:
    // `path` as pathOf() returns it; null for no library.
    explicit LoadedLibrary(const char* path);
    ~LoadedLibrary();
    LoadedLibrary(const LoadedLibrary&) = delete;
    LoadedLibrary& operator=(const LoadedLibrary&) = delete;

    // The path of the loaded library with this file name, null if there is none: "libname.so.5" finds
    // "libname.so.5.15" too. The text is valid until the next call.
    static const char* pathOf(const char* fileName);

    // A function of the library or of those that it links; null if there is none.
    template <typename Function>
    Function function(const char* symbol) const
    {
        return reinterpret_cast<Function>(find(symbol));
    }

    // The same for a variable. A program that is not position-independent has a library's variables itself.
    template <typename Type>
    Type* variable(const char* symbol) const
    {
        return static_cast<Type*>(findVariable(symbol));
    }

private:
    void* find(const char* symbol) const;
    void* findVariable(const char* symbol) const;

    void* const handle;
};

} // namespace preload
