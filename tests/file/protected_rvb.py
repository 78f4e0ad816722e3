#!/usr/bin/env python3
"""Takes the protection of a database file away or puts one on, with another library than the program's.

    protected_rvb.py decrypt FILE OUT            checks all digests
    protected_rvb.py encrypt FILE OUT ALGORITHM  ALGORITHM as the manifest names it
    protected_rvb.py decrypt-public FILE OUT     without the password, by the keys that the manifest tells

The password is the environment variable RVB_PASSWORD. Written from doc/file-format.md alone.
"""
import base64
import ctypes
import hashlib
import os
import sys
import zipfile
import zlib

HEADER = "File\tDeflated\tSize\tDigestType\tDigestValue\tAlgorithm\tIV\tKey\tSalt\tIterations"
MANIFEST = "META-INF/manifest.txt"
PLAIN_MEMBERS = ("this-version.txt", "min-version.txt", MANIFEST)
CIPHERS = {"Blowfish CFB": (4, 8), "Twofish CFB": (303, 16)}  # libgcrypt's numbers, bytes of a block
CFB = 2


def load_library():
    try:
        library = ctypes.CDLL("libgcrypt.so.20")
    except OSError:
        sys.exit(77)
    library.gcry_check_version(None)
    return library


GCRYPT = load_library()


def run_cipher(algorithm, key, vector, data, decrypt):
    handle, out = ctypes.c_void_p(), ctypes.create_string_buffer(max(len(data), 1))

    def call(function, *arguments):
        if getattr(GCRYPT, function)(*arguments) != 0:
            raise ValueError(function)

    call("gcry_cipher_open", ctypes.byref(handle), CIPHERS[algorithm][0], CFB, 0)
    call("gcry_cipher_setkey", handle, key, ctypes.c_size_t(len(key)))
    call("gcry_cipher_setiv", handle, vector, ctypes.c_size_t(len(vector)))
    if data:
        size = ctypes.c_size_t(len(data))
        call("gcry_cipher_decrypt" if decrypt else "gcry_cipher_encrypt", handle, out, size, data, size)
    GCRYPT.gcry_cipher_close(handle)
    return out.raw[:len(data)]


def derive_key(salt):
    secret = hashlib.sha1(os.environ["RVB_PASSWORD"].encode("utf-8")).digest()
    return hashlib.pbkdf2_hmac("sha1", secret, salt, 1024, 16)


def decrypt_member(columns, data, public):
    _, deflated, size, kind, digest, algorithm, vector, key, salt, _ = columns
    key = base64.b64decode(key, validate=True) if public else derive_key(base64.b64decode(salt, validate=True))
    plain = run_cipher(algorithm, key, base64.b64decode(vector, validate=True), data, True)
    digested = plain[:1024] if kind == "SHA1/1K" else plain
    if hashlib.sha1(digested).digest() != base64.b64decode(digest, validate=True):
        raise ValueError("digest of " + columns[0])
    if deflated == "1":
        stream = zlib.decompressobj(-15)
        plain = stream.decompress(plain) + stream.flush()
        if not stream.eof or stream.unused_data:
            raise ValueError("deflate stream of " + columns[0])
    if len(plain) != int(size):
        raise ValueError("size of " + columns[0])
    return plain


def decrypt(source, target, public=False):
    lines = source.read(MANIFEST).decode("utf-8").split("\r\n")
    if lines[0] != HEADER:
        raise ValueError("manifest")
    listed = [HEADER]
    for columns in (line.split("\t") for line in lines[1:]):
        data = source.read(columns[0])
        if (len(columns) == 2) != (columns[0] in PLAIN_MEMBERS):
            raise ValueError("protection of " + columns[0])
        if len(columns) == 10:
            data = decrypt_member(columns, data, public)
        listed.append(columns[0] + "\t1")
        target.writestr(columns[0], data)
    target.writestr(MANIFEST, "\r\n".join(listed))


def encrypt(source, target, algorithm):
    listed = [HEADER]
    for number, name in enumerate(source.namelist()):
        data = source.read(name)
        if name == MANIFEST:
            continue
        if name in PLAIN_MEMBERS:
            target.writestr(name, data)
            listed.append(name + "\t1")
            continue
        # Both kinds of members and of digests in turns.
        deflated, kind = (number // 2) % 2, ("SHA1/1K", "SHA1")[number % 2]
        size = len(data)
        if deflated:
            stream = zlib.compressobj(9, zlib.DEFLATED, -15)
            data = stream.compress(data) + stream.flush()
        digest = hashlib.sha1(data[:1024] if kind == "SHA1/1K" else data).digest()
        salt, vector = os.urandom(16), os.urandom(CIPHERS[algorithm][1])
        data = run_cipher(algorithm, derive_key(salt), vector, data, False)
        encoded = [base64.b64encode(item).decode() for item in (digest, vector, salt)]
        listed.append("\t".join([name, str(deflated), str(size), kind, encoded[0], algorithm, encoded[1], "", encoded[2],
                                 "1024"]))
        target.writestr(name, data, compress_type=(zipfile.ZIP_STORED, zipfile.ZIP_DEFLATED)[number % 2])
    target.writestr(MANIFEST, "\r\n".join(listed))


def main():
    action, source, target, *algorithm = sys.argv[1:]
    with zipfile.ZipFile(source) as archive, zipfile.ZipFile(target, "w", zipfile.ZIP_DEFLATED) as made:
        if action == "encrypt":
            encrypt(archive, made, algorithm[0])
        else:
            decrypt(archive, made, action == "decrypt-public")


main()
