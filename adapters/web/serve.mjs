// Serves a folder on the loopback address with the headers that isolate a page, so that its frames may have threads.
//   node serve.mjs FOLDER PORT [--bare]     PORT 0 takes a free one; --bare leaves those headers out; prints the address

import { createReadStream } from 'node:fs';
import { stat } from 'node:fs/promises';
import { createServer } from 'node:http';
import { extname, join, normalize } from 'node:path';
import { argv } from 'node:process';
import { pipeline } from 'node:stream';

const kTypes = new Map([
    ['.html', 'text/html; charset=utf-8'],
    ['.js', 'text/javascript; charset=utf-8'],
    ['.css', 'text/css; charset=utf-8'],
    ['.wasm', 'application/wasm'],
    ['.png', 'image/png'],
]);

const [folder, port, isBare] = [argv[2], Number(argv[3]), argv[4] === '--bare'];

const kIsolation = {
    'Cross-Origin-Opener-Policy': 'same-origin',
    'Cross-Origin-Embedder-Policy': 'require-corp',
    'Cross-Origin-Resource-Policy': 'same-origin',
};

const kHeaders = { ...(isBare ? {} : kIsolation), 'Cache-Control': 'no-cache', 'X-Content-Type-Options': 'nosniff' };

const server = createServer(async (request, response) => {
    try {
        const path = normalize(decodeURIComponent(new URL(request.url ?? '/', 'http://localhost').pathname));
        const file = join(folder, path.endsWith('/') ? `${path}index.html` : path);
        const found = await stat(file);
        if (!found.isFile()) {
            throw new Error('no file');
        }
        const type = kTypes.get(extname(file)) ?? 'application/octet-stream';
        response.writeHead(200, { ...kHeaders, 'Content-Type': type, 'Content-Length': found.size });
        pipeline(createReadStream(file), response, () => {}); // whoever goes away in the middle has gone
    } catch { // nor is an address that is none
        response.writeHead(404, kHeaders);
        response.end('There is no such file.\n');
    }
});

server.listen(port, '127.0.0.1', () => {
    const address = server.address();
    console.log(`http://127.0.0.1:${typeof address === 'object' ? address?.port : port}/`);
});
server.on('error', (reason) => {
    console.error(`cannot listen on port ${port}: ${reason.message}`);
    process.exitCode = 1;
});
