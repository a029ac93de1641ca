// Implements the GL functions that the WebAssembly module imports, by calls of a WebGL context. A GL name is an index
// into a table of WebGL objects.

type Calls = Record<string, (...numbers: never[]) => number | void>;
type GlObject = WebGLBuffer | WebGLFramebuffer | WebGLProgram | WebGLShader | WebGLTexture | WebGLUniformLocation;

const COMPILE_STATUS = 0x8b81;
const FRAMEBUFFER_BINDING = 0x8ca6;

export class GlImports {
    /** Context in which the functions draw. Must be set before the module draws. */
    gl!: WebGLRenderingContext;
    /** Memory of the module. Must be set after the module is instantiated. */
    memory!: WebAssembly.Memory;
    private objects: (GlObject | null)[] = [null];
    /**
     * GL names of uniform locations. The key consists of the program's GL name and the address of the uniform's name.
     */
    private locations = new Map<string, number>();

    /** Forgets all GL objects, for example because the context is lost. */
    forget(): void {
        this.objects = [null];
        this.locations.clear();
    }

    /** Deletes all GL objects that the module has created in the context. */
    deleteAll(): void {
        const gl = this.gl as unknown as Record<string, (object: GlObject) => void>;
        // Derives the name of the function from the name of the object's class: deleteBuffer deletes a WebGLBuffer. A
        // uniform location has no such function, because it is deleted with its program.
        for (const object of this.objects) {
            if (object) {
                gl[object.constructor.name.replace("WebGL", "delete")]?.(object);
            }
        }
        this.forget();
    }

    /** Returns an object that maps the names of the imported functions to their implementations. */
    functions(): Calls {
        return { ...this.sameFunctions(), ...this.objectFunctions(), ...this.shaderFunctions(), ...this.dataFunctions() };
    }

    /**
     * Functions that have the same arguments in GL and in WebGL. Only uniform locations are converted from GL names to
     * objects.
     */
    private sameFunctions(): Calls {
        type Call = (...values: unknown[]) => void;
        const same = (name: keyof WebGLRenderingContext) => (...numbers: number[]) => (this.gl[name] as Call)(...numbers);
        const uniform = (name: keyof WebGLRenderingContext) => (location: number, ...numbers: number[]) =>
            (this.gl[name] as Call)(this.object(location), ...numbers);
        return {
            glActiveTexture: same("activeTexture"),
            glBlendFunc: same("blendFunc"),
            glClear: same("clear"),
            glClearColor: same("clearColor"),
            glDisable: same("disable"),
            glDisableVertexAttribArray: same("disableVertexAttribArray"),
            glDrawArrays: same("drawArrays"),
            glDrawElements: same("drawElements"),
            glEnableVertexAttribArray: same("enableVertexAttribArray"),
            glTexParameterf: same("texParameterf"),
            glTexParameteri: same("texParameteri"),
            glUniform1f: uniform("uniform1f"),
            glUniform1i: uniform("uniform1i"),
            glUniform2f: uniform("uniform2f"),
            glUniform3f: uniform("uniform3f"),
            glVertexAttribPointer: same("vertexAttribPointer"),
            glViewport: same("viewport"),
        };
    }

    /** Functions that create, bind and delete GL objects. */
    private objectFunctions(): Calls {
        return {
            glGenTextures: (count: number, names: number) => this.make(count, names, () => this.gl.createTexture()),
            glGenBuffers: (count: number, names: number) => this.make(count, names, () => this.gl.createBuffer()),
            glGenFramebuffers: (count: number, names: number) => this.make(count, names, () => this.gl.createFramebuffer()),
            glDeleteTextures: (count: number, names: number) => this.remove(count, names, (object) => this.gl.deleteTexture(object)),
            glDeleteBuffers: (count: number, names: number) => this.remove(count, names, (object) => this.gl.deleteBuffer(object)),
            glDeleteFramebuffers: (count: number, names: number) =>
                this.remove(count, names, (object) => this.gl.deleteFramebuffer(object)),
            glBindTexture: (target: number, name: number) => this.gl.bindTexture(target, this.object(name)),
            glBindBuffer: (target: number, name: number) => this.gl.bindBuffer(target, this.object(name)),
            glBindFramebuffer: (target: number, name: number) => this.gl.bindFramebuffer(target, this.object(name)),
            glFramebufferTexture2D: (target: number, attachment: number, texture: number, name: number, level: number) =>
                this.gl.framebufferTexture2D(target, attachment, texture, this.object(name), level),
            glUseProgram: (name: number) => this.gl.useProgram(this.object(name)),
        };
    }

    /** Functions that compile and link GL programs, and find the uniforms and attributes of the programs. */
    private shaderFunctions(): Calls {
        return {
            glCreateShader: (type: number) => this.add(this.gl.createShader(type)),
            glShaderSource: (shader: number, _count: number, strings: number) =>
                this.gl.shaderSource(this.object(shader)!, this.text(this.view(Uint32Array, strings, 1)[0]!)),
            glCompileShader: (shader: number) => this.gl.compileShader(this.object(shader)!),
            glGetShaderiv: (shader: number, _parameter: number, result: number) =>
                this.write(result, this.gl.getShaderParameter(this.object(shader)!, COMPILE_STATUS)),
            glDeleteShader: (shader: number) => this.gl.deleteShader(this.object(shader)),
            glCreateProgram: () => this.add(this.gl.createProgram()),
            glAttachShader: (program: number, shader: number) => this.gl.attachShader(this.object(program)!, this.object(shader)!),
            glBindAttribLocation: (program: number, index: number, name: number) =>
                this.gl.bindAttribLocation(this.object(program)!, index, this.text(name)),
            glLinkProgram: (program: number) => this.gl.linkProgram(this.object(program)!),
            glGetProgramiv: (program: number, parameter: number, result: number) =>
                this.write(result, this.gl.getProgramParameter(this.object(program)!, parameter)),
            glDeleteProgram: (program: number) => this.gl.deleteProgram(this.object(program)),
            // In a lost context no program can be linked. The library then passes program 0, for which WebGL would throw
            // an error.
            glGetAttribLocation: (program: number, name: number) =>
                program ? this.gl.getAttribLocation(this.object(program)!, this.text(name)) : -1,
            glGetUniformLocation: (program: number, name: number) => this.location(program, name),
        };
    }

    /** Functions that read or write the memory of the module. */
    private dataFunctions(): Calls {
        return {
            glBufferData: (target: number, bytes: number, data: number, usage: number) =>
                this.gl.bufferData(target, this.view(Uint8Array, data, bytes), usage),
            glTexImage2D: (target: number, level: number, format: number, width: number, height: number, border: number, sourceFormat: number, type: number, data: number) => {
                const pixels = data ? this.view(Uint8Array, data, 4 * width * height) : null;
                this.gl.texImage2D(target, level, format, width, height, border, sourceFormat, type, pixels);
            },
            glUniformMatrix4fv: (location: number, count: number, transpose: number, data: number) =>
                this.gl.uniformMatrix4fv(
                    this.object(location) as WebGLUniformLocation | null,
                    transpose !== 0,
                    this.view(Float32Array, data, 16 * count),
                ),
            glReadPixels: (x: number, y: number, width: number, height: number, format: number, type: number, data: number) =>
                this.gl.readPixels(x, y, width, height, format, type, this.view(Uint8Array, data, 4 * width * height)),
            // The module queries only GL_FRAMEBUFFER_BINDING.
            glGetIntegerv: (_parameter: number, result: number) =>
                this.write(result, this.objects.indexOf(this.gl.getParameter(FRAMEBUFFER_BINDING) as GlObject | null)),
        };
    }

    private object<Kind extends GlObject>(name: number): Kind | null {
        return (this.objects[name] ?? null) as Kind | null;
    }

    /** Adds an object to the table and returns its GL name. Returns 0 if WebGL could not create the object. */
    private add(object: GlObject | null): number {
        if (!object) {
            return 0;
        }
        const free = this.objects.indexOf(null, 1);
        const name = free < 0 ? this.objects.length : free;
        this.objects[name] = object;
        return name;
    }

    private make(count: number, names: number, create: () => GlObject | null): void {
        const list = this.view(Uint32Array, names, count);
        for (let at = 0; at < count; ++at) {
            list[at] = this.add(create());
        }
    }

    private remove(count: number, names: number, remove: (object: GlObject | null) => void): void {
        for (const name of this.view(Uint32Array, names, count)) {
            remove(this.object(name));
            if (name) {
                this.objects[name] = null;
            }
        }
    }

    /** The library looks up uniform locations in each frame. A lookup is slow in WebGL, so the locations are cached. */
    private location(program: number, name: number): number {
        const key = `${program} ${name}`;
        let location = this.locations.get(key);
        if (location === undefined) {
            location = (program && this.add(this.gl.getUniformLocation(this.object(program)!, this.text(name)))) || -1;
            this.locations.set(key, location);
        }
        return location;
    }

    private write(address: number, value: number | boolean): void {
        this.view(Int32Array, address, 1)[0] = Number(value);
    }

    private text(address: number): string {
        const bytes = new Uint8Array(this.memory.buffer, address);
        return new TextDecoder().decode(bytes.subarray(0, bytes.indexOf(0)));
    }

    private view<View>(
        kind: new (buffer: ArrayBuffer, offset: number, length: number) => View,
        address: number,
        count: number,
    ): View {
        return new kind(this.memory.buffer as ArrayBuffer, address, count);
    }
}
