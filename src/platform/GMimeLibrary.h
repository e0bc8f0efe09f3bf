#pragma once

// Casts between GMime's types are plain casts, so that they call nothing.
#ifndef G_DISABLE_CAST_CHECKS
#define G_DISABLE_CAST_CHECKS
#endif
#include <gmime/gmime.h>

namespace velmora {

// The calls of GMime (and of the GObject beneath it) the program makes.
#define VELMORA_GMIME_CALLS(X)                                                                     \
    X(g_mime_init)                                                                                 \
    X(g_mime_parser_new)                                                                           \
    X(g_mime_parser_init_with_stream)                                                              \
    X(g_mime_parser_construct_part)                                                                \
    X(g_mime_stream_null_new)                                                                      \
    X(g_mime_stream_mem_new)                                                                       \
    X(g_mime_stream_mem_new_with_byte_array)                                                       \
    X(g_mime_stream_mem_set_owner)                                                                 \
    X(g_mime_stream_mem_get_byte_array)                                                            \
    X(g_mime_stream_mem_get_type)                                                                  \
    X(g_mime_object_get_header)                                                                    \
    X(g_mime_object_get_content_type)                                                              \
    X(g_mime_object_get_content_disposition)                                                       \
    X(g_mime_content_type_is_type)                                                                 \
    X(g_mime_content_disposition_is_attachment)                                                    \
    X(g_mime_multipart_get_type)                                                                   \
    X(g_mime_multipart_get_count)                                                                  \
    X(g_mime_multipart_get_part)                                                                   \
    X(g_mime_message_part_get_type)                                                                \
    X(g_mime_part_get_type)                                                                        \
    X(g_mime_part_is_attachment)                                                                   \
    X(g_mime_part_get_filename)                                                                    \
    X(g_mime_part_get_content)                                                                     \
    X(g_mime_text_part_get_type)                                                                   \
    X(g_mime_text_part_get_charset)                                                                \
    X(g_mime_text_part_get_text)                                                                   \
    X(g_mime_data_wrapper_get_stream)                                                              \
    X(g_mime_data_wrapper_get_encoding)                                                            \
    X(g_mime_data_wrapper_write_to_stream)                                                         \
    X(g_mime_encoding_init_decode)                                                                 \
    X(g_mime_encoding_outlen)                                                                      \
    X(g_mime_encoding_step)                                                                        \
    X(g_mime_encoding_flush)                                                                       \
    X(g_mime_utils_header_decode_date)                                                             \
    X(g_object_unref)                                                                              \
    X(g_type_check_instance_is_a)

struct GMimeLibrary {
#define VELMORA_GMIME_POINTER(name) decltype(&::name) name = nullptr;
    VELMORA_GMIME_CALLS(VELMORA_GMIME_POINTER)
#undef VELMORA_GMIME_POINTER

    // Whether an object is of a type or derives from it.
    bool is(gpointer object, GType type) const {
        return object && g_type_check_instance_is_a(static_cast<GTypeInstance*>(object), type);
    }
};

// GMime and the dozen libraries it brings are loaded when a message is
// first parsed rather than with the program, whose start-up they would
// double. Loaded and set up once, from whichever thread asks first; null
// when the library or one of its calls is missing.
const GMimeLibrary* GMime();

} // namespace velmora
