// A GL program that draws a frame of a video into the texture of the background, as CSS would show the video.

import type { Size } from "../engine/size";

/**
 * Position of a video in the water, and the colour around the video. A rectangle has the numbers left, top, right and
 * bottom. (0, 0) is the top left corner of the water, and (1, 1) is the bottom right corner.
 */
export interface VideoLayout {
    /** Rectangle of the whole video, which may be larger than the water. */
    box: number[];
    /** Rectangle outside which the video is hidden. */
    visible: number[];
    /** Colour around the video and behind the video's transparent pixels: red, green and blue, 0 to 1. */
    backdrop: number[];
}

// The first row of a texture is the top row of the image, so y grows downwards in all coordinates.
const vertexShader = `attribute vec2 corner;
varying vec2 point;
void main(){point=corner;gl_Position=vec4(2.*corner-1.,0,1);}`;
const fragmentShader = `precision highp float;
varying vec2 point;
uniform sampler2D video;
uniform vec4 box,visible;
uniform vec3 backdrop;
void main(){
vec4 color=texture2D(video,(point-box.xy)/(box.zw-box.xy));
vec2 inside=step(visible.xy,point)*step(point,visible.zw);
gl_FragColor=vec4(mix(backdrop,color.rgb,color.a*inside.x*inside.y),1);}`;

/** Owns GL objects that draw a video frame into a texture with one draw call. */
export class VideoPass {
    private readonly program: WebGLProgram;
    private readonly texture: WebGLTexture | null;
    private readonly framebuffer: WebGLFramebuffer | null;
    private readonly corners: WebGLBuffer | null;
    /** Locations of the uniforms `box`, `visible` and `backdrop`. */
    private readonly locations: (WebGLUniformLocation | null)[];

    /** Creates the GL objects of the pass. After the context was lost and restored, a new VideoPass is needed. */
    constructor(private readonly gl: WebGLRenderingContext) {
        this.program = gl.createProgram()!;
        for (const [type, text] of [[gl.VERTEX_SHADER, vertexShader], [gl.FRAGMENT_SHADER, fragmentShader]] as const) {
            const shader = gl.createShader(type)!;
            gl.shaderSource(shader, text);
            gl.compileShader(shader);
            gl.attachShader(this.program, shader);
        }
        gl.bindAttribLocation(this.program, 0, "corner");
        gl.linkProgram(this.program);
        this.locations = ["box", "visible", "backdrop"].map((name) => gl.getUniformLocation(this.program, name));
        this.framebuffer = gl.createFramebuffer();
        this.corners = gl.createBuffer();
        gl.bindBuffer(gl.ARRAY_BUFFER, this.corners);
        gl.bufferData(gl.ARRAY_BUFFER, new Float32Array([0, 0, 1, 0, 0, 1, 1, 1]), gl.STATIC_DRAW);
        gl.bindBuffer(gl.ARRAY_BUFFER, null);
        this.texture = gl.createTexture();
        gl.bindTexture(gl.TEXTURE_2D, this.texture);
        gl.texParameteri(gl.TEXTURE_2D, gl.TEXTURE_MIN_FILTER, gl.LINEAR);
        gl.texParameteri(gl.TEXTURE_2D, gl.TEXTURE_WRAP_S, gl.CLAMP_TO_EDGE);
        gl.texParameteri(gl.TEXTURE_2D, gl.TEXTURE_WRAP_T, gl.CLAMP_TO_EDGE);
    }

    /**
     * Draws the current frame of the video into the texture `target`, which has this size in pixels. Throws if the
     * video is from another origin without CORS. Afterwards, no GL object is bound, as the library expects.
     */
    draw(video: HTMLVideoElement, target: WebGLTexture, size: Size, layout: VideoLayout): void {
        const { gl, program } = this;
        const [box, visible, backdrop] = this.locations;
        gl.activeTexture(gl.TEXTURE0);
        gl.bindTexture(gl.TEXTURE_2D, this.texture);
        gl.texImage2D(gl.TEXTURE_2D, 0, gl.RGBA, gl.RGBA, gl.UNSIGNED_BYTE, video);
        gl.bindFramebuffer(gl.FRAMEBUFFER, this.framebuffer);
        gl.framebufferTexture2D(gl.FRAMEBUFFER, gl.COLOR_ATTACHMENT0, gl.TEXTURE_2D, target, 0);
        gl.viewport(0, 0, size.width, size.height);
        gl.useProgram(program);
        gl.uniform4fv(box!, layout.box);
        gl.uniform4fv(visible!, layout.visible);
        gl.uniform3fv(backdrop!, layout.backdrop);
        gl.bindBuffer(gl.ARRAY_BUFFER, this.corners);
        gl.enableVertexAttribArray(0);
        gl.vertexAttribPointer(0, 2, gl.FLOAT, false, 0, 0);
        gl.drawArrays(gl.TRIANGLE_STRIP, 0, 4);
        gl.disableVertexAttribArray(0);
        gl.bindBuffer(gl.ARRAY_BUFFER, null);
        gl.bindFramebuffer(gl.FRAMEBUFFER, null);
        gl.bindTexture(gl.TEXTURE_2D, null);
    }
}
